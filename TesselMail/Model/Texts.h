#pragma once

#include <string_view>

namespace TesselMail {

/// One visible text in both languages of the interface; Preferences::text picks one.
struct Phrase {
    std::string_view english;
    std::string_view chinese;

    bool operator==(const Phrase&) const = default;

    /// The text in Simplified Chinese or in English.
    constexpr std::string_view in(bool inChinese) const noexcept { return inChinese ? chinese : english; }
};

/// Every text the application shows.
namespace Texts {

inline constexpr Phrase applicationName = {"Tessel Mail", "Tessel Mail"};

// Commands
inline constexpr Phrase open = {"Open…", "打开…"};
inline constexpr Phrase openFolder = {"Open folder…", "打开文件夹…"};
inline constexpr Phrase openHelp = {"Open (Ctrl+O)", "打开 (Ctrl+O)"};
inline constexpr Phrase openMore = {"More ways to open", "更多打开方式"};
inline constexpr Phrase openFiles = {"Open files…", "打开文件…"};
inline constexpr Phrase closeFile = {"Close file", "关闭文件"};
inline constexpr Phrase closeAll = {"Close all files", "关闭所有文件"};
inline constexpr Phrase exportOriginal = {"Export original…", "导出原始邮件…"};
inline constexpr Phrase exportOriginalHelp = {"Export original", "导出原始邮件"};
inline constexpr Phrase messageDetails = {"Message details", "邮件详情"};
inline constexpr Phrase about = {"About Tessel Mail", "关于 Tessel Mail"};
inline constexpr Phrase quit = {"Quit", "退出"};
inline constexpr Phrase nextMessage = {"Next message", "下一封邮件"};
inline constexpr Phrase previousMessage = {"Previous message", "上一封邮件"};
inline constexpr Phrase nextPane = {"Next pane", "下一个窗格"};
inline constexpr Phrase back = {"Back", "返回"};
inline constexpr Phrase previousPane = {"Previous pane", "上一个窗格"};
inline constexpr Phrase widenPane = {"Wider pane", "加宽窗格"};
inline constexpr Phrase narrowPane = {"Narrower pane", "收窄窗格"};
inline constexpr Phrase closeWindow = {"Close window", "关闭窗口"};
inline constexpr Phrase keyboardShortcuts = {"Keyboard shortcuts", "键盘快捷键"};
inline constexpr Phrase files = {"Files", "文件"};
inline constexpr Phrase window = {"Window", "窗口"};
inline constexpr Phrase menu = {"Main menu", "主菜单"};
inline constexpr Phrase cancel = {"Cancel", "取消"};
inline constexpr Phrase ok = {"OK", "好"};
inline constexpr Phrase save = {"Save", "保存"};
inline constexpr Phrase aboutText = {"A calm place for your mail.", "安心阅读，轻松接住邮件链接。"};
inline constexpr Phrase networkLocked = {"No network: enforced by the system", "无网络：由系统强制"};
inline constexpr Phrase networkNotLocked = {
    "This system could not be asked to keep Tessel Mail off the network. Tessel Mail itself never uses it.",
    "无法要求此系统禁止 Tessel Mail 使用网络。Tessel Mail 自身从不使用网络。"};

// Panels
inline constexpr Phrase openPrompt = {"Open", "打开"};
inline constexpr Phrase openTitle = {"Choose email files, a mailbox archive, or a Maildir folder.",
                                     "选择邮件文件、邮箱存档或 Maildir 文件夹。"};
inline constexpr Phrase mailFiles = {"Email files and archives", "邮件文件与存档"};
inline constexpr Phrase allFiles = {"All files", "所有文件"};
inline constexpr Phrase saved = {"Saved", "已保存"};
inline constexpr Phrase showInFolder = {"Show in folder", "在文件夹中显示"};
inline constexpr Phrase savedAs = {"Saved as ", "已保存为 "}; // before the path, where no folder can be shown

// Opening
inline constexpr Phrase opening = {"Opening…", "正在打开…"};
inline constexpr Phrase freeIndexMemory = {"Close an archive to free index memory.",
                                           "请关闭存档以释放索引内存。"};
// Of the files that were left, and of those that one request opens
inline constexpr Phrase fileLeft = {"{} file was not opened: at most {} are opened at a time.",
                                    "还有 {} 个文件未打开：一次最多打开 {} 个。"};
inline constexpr Phrase filesLeft = {"{} files were not opened: at most {} are opened at a time.",
                                     "还有 {} 个文件未打开：一次最多打开 {} 个。"};
inline constexpr Phrase couldNotComplete = {"Could not complete this action", "未能完成操作"};

// Sidebar and list
inline constexpr Phrase openedFiles = {"Open files", "已打开的文件"};
inline constexpr Phrase messageCount = {" messages", " 封邮件"}; // after the count
inline constexpr Phrase messages = {"Messages", "邮件"};
inline constexpr Phrase messageOrder = {"Message order", "邮件顺序"};
inline constexpr Phrase newestFirst = {"Newest first", "最新优先"};
inline constexpr Phrase noSubject = {"(No subject)", "（无主题）"};
inline constexpr Phrase noSender = {"(No sender)", "（无发件人）"};
inline constexpr Phrase noMessages = {"No messages", "没有邮件"};
inline constexpr Phrase limitReached = {
    "Partial list: the in-memory index limit was reached. Close other archives "
    "and reopen to free space.",
    "列表尚不完整：已达到内存索引上限。可关闭其他存档后重新打开以释放空间。"};
inline constexpr Phrase interrupted = {"Indexing stopped. Reopen the archive to read the remaining messages.",
                                       "索引已停止，重新打开存档可继续读取其余邮件。"};

// Reading
inline constexpr Phrase from = {"From", "发件人"};
inline constexpr Phrase to = {"To", "收件人"};
inline constexpr Phrase cc = {"Cc", "抄送"};
inline constexpr Phrase date = {"Date", "日期"};
inline constexpr Phrase attachments = {"Attachments", "附件"};
inline constexpr Phrase messageBody = {"Message", "正文"};
inline constexpr Phrase readingMessage = {"Reading message", "正在读取邮件"};
inline constexpr Phrase selectMessage = {"Select a message", "选择一封邮件"};
inline constexpr Phrase selectMessageHint = {"Choose a message to read it here.",
                                             "在列表中选择邮件即可阅读。"};
inline constexpr Phrase tooLargeToPreview = {"Message too large to preview", "邮件过大，暂不预览"};
inline constexpr Phrase tooLargeToPreviewHint = {
    "This message exceeds the 32 MiB preview limit. Use Export original to save it without this limit.",
    "这封邮件超过 32 MiB 预览上限，可通过“导出原始邮件”完整保存，不受此上限限制。"};
inline constexpr Phrase notShown = {"This message is not shown", "这封邮件未能显示"};
inline constexpr Phrase tryAgain = {"Try again", "重试"};
inline constexpr Phrase reopen = {"Reopen", "重新打开"};
inline constexpr Phrase noPlainText = {"This message has no plain text.", "这封邮件没有纯文本内容。"};
inline constexpr Phrase showPlainText = {"Show as plain text", "以纯文本显示"};
inline constexpr Phrase selectAll = {"Select All", "全选"};
inline constexpr Phrase plainWithoutSandbox = {
    "This system does not allow the sandbox that the reading view needs. Messages are shown as plain text.",
    "此系统不允许阅读视图所需的沙盒，邮件以纯文本显示。"};
inline constexpr Phrase plainWithoutRules = {
    "The rules that keep the reading view offline could not be stored in your cache folder. Messages are "
    "shown as plain text.",
    "无法在缓存文件夹中存储使阅读视图保持离线的规则，邮件以纯文本显示。"};
inline constexpr Phrase plainWithoutAnswer = {
    "The reading view could not update. The message is shown as plain text.",
    "阅读视图未能更新，邮件以纯文本显示。"};
inline constexpr Phrase saveAttachment = {"Save attachment…", "保存附件…"};
inline constexpr Phrase readAttachedMessage = {"Read attached message", "阅读附加邮件"};
inline constexpr Phrase unavailable = {"Unavailable in this message", "无法读取此附件"};
inline constexpr Phrase attachedMessage = {"Attached message", "附加邮件"};
inline constexpr Phrase embeddedObject = {"Embedded object · Save only", "嵌入对象 · 仅供保存"};
inline constexpr Phrase viewNotUpdated = {"The reading view could not update. Try opening the message again.",
                                          "阅读视图未能更新，请尝试重新打开这封邮件。"};
inline constexpr Phrase viewNotOpened = {"The reading view could not open. Try opening the message again.",
                                         "阅读视图未能打开，请尝试重新打开这封邮件。"};
inline constexpr Phrase viewStopped = {"The reading view stopped. Try opening the message again.",
                                       "阅读视图已停止，请尝试重新打开这封邮件。"};

// Links
inline constexpr Phrase link = {"Link", "链接"};
inline constexpr Phrase leadsElsewhere = {"Not the site its text names: ",
                                          "与文字所示网站不同："}; // before the address
inline constexpr Phrase linkAddress = {"URL", "URL"};
inline constexpr Phrase copyLink = {"Copy link", "复制链接"};
inline constexpr Phrase emailLink = {"Email link", "邮件链接"};
inline constexpr Phrase bcc = {"Bcc", "密送"};
inline constexpr Phrase subject = {"Subject", "主题"};
inline constexpr Phrase copyAddress = {"Copy address", "复制地址"};
inline constexpr Phrase copyMessage = {"Copy message", "复制邮件内容"};
inline constexpr Phrase telephone = {"Telephone", "电话号码"};
inline constexpr Phrase number = {"Number", "号码"};
inline constexpr Phrase copyNumber = {"Copy number", "复制号码"};
inline constexpr Phrase textMessage = {"Text message", "短信"};
inline constexpr Phrase textMessageBody = {"Message", "内容"};
inline constexpr Phrase copyTextMessage = {"Copy message", "复制短信内容"};
inline constexpr Phrase copied = {"Copied", "已复制"};
inline constexpr Phrase copyValue = {"Copy", "复制"};
inline constexpr Phrase close = {"Close", "关闭"};

// A captured link
inline constexpr Phrase capturedLink = {"Captured link", "已接住的链接"};
inline constexpr Phrase copyDetails = {"Copy details", "复制内容"};
inline constexpr Phrase copyOriginalLink = {"Copy original link", "复制原始链接"};
inline constexpr Phrase nothingSent = {"Nothing sent.", "没有发送邮件。"};
inline constexpr Phrase onlyHeld = {
    "This link is only held in this window. You can copy what you need, or simply close it.",
    "链接仅保留在当前窗口中。可以复制需要的内容，也可以直接关闭。"};

// Searching
inline constexpr Phrase searchMessages = {"Search messages", "搜索邮件"};
inline constexpr Phrase searching = {"Searching…", "正在搜索…"};
inline constexpr Phrase shownIsNoResult = {"The message shown is not among the results.",
                                           "显示的邮件不在搜索结果中。"};
inline constexpr Phrase unreadable = {" messages could not be searched.",
                                      " 封邮件未能搜索。"}; // after the count

// Settings
inline constexpr Phrase settings = {"Settings", "设置"};
inline constexpr Phrase readingSettings = {"Reading", "阅读"};
inline constexpr Phrase language = {"Language", "语言"};
inline constexpr Phrase automatic = {"Automatic", "自动"};
inline constexpr Phrase english = {"English", "English"};
inline constexpr Phrase simplifiedChinese = {"简体中文", "简体中文"};
inline constexpr Phrase appearance = {"Appearance", "外观"};
inline constexpr Phrase light = {"Light", "浅色"};
inline constexpr Phrase dark = {"Dark", "深色"};
inline constexpr Phrase textSize = {"Reading text size", "正文字号"};
inline constexpr Phrase emailLinks = {"Email links", "邮件链接"};
inline constexpr Phrase emailLinksHint = {
    "Open email links here, without opening a compose window or connecting an account.",
    "在此接住邮件链接，无需打开撰写窗口或连接邮箱账号。"};
inline constexpr Phrase becomeHandler = {"Use Tessel Mail for email links…",
                                         "使用 Tessel Mail 打开邮件链接…"};
inline constexpr Phrase becomeHandlerQuestion = {"Use Tessel Mail for email links?",
                                                 "使用 Tessel Mail 打开邮件链接？"};
inline constexpr Phrase becomeHandlerHint = {
    "This changes the default app for mailto links. You can change it later in another email app.",
    "这将更改 mailto 链接的默认打开应用。之后可在其他邮件应用中重新设置。"};
inline constexpr Phrase becomeHandlerAnswer = {"Use Tessel Mail", "使用 Tessel Mail"};
inline constexpr Phrase handlerSet = {"Tessel Mail now opens email links.",
                                      "邮件链接现在由 Tessel Mail 打开。"};
inline constexpr Phrase handlerFailed = {
    "Could not change the default app. Try after installing Tessel Mail.",
    "未能更改默认应用，请安装 Tessel Mail 后重试。"};
inline constexpr Phrase privacy = {"Privacy", "隐私"};
inline constexpr Phrase privacyHeadline = {"Mail stays on your computer.", "邮件留在你的电脑上。"};
inline constexpr Phrase privacyText = {
    "Remote images, scripts, and automatic attachment opening are blocked. No accounts, sending, "
    "tracking, or cloud uploads.",
    "不加载远程图片，不运行脚本，不自动打开附件。不连接账号、不发送邮件，也无追踪或云端上传。"};
inline constexpr Phrase captureSetUp = {"Set up email link capture…", "设置邮件链接接管…"};

// Welcome
inline constexpr Phrase welcomeLine = {"A calm place for your mail.", "安心阅读，轻松接住邮件链接。"};
inline constexpr Phrase welcomeDrop = {"Drop files here to read them on your computer.",
                                       "将文件拖到这里，在电脑上直接阅读。"};
inline constexpr Phrase welcomeFormats = {"EML / EMLX / MSG / OFT / MBOX / Maildir",
                                          "EML / EMLX / MSG / OFT / MBOX / Maildir"};
inline constexpr Phrase openMail = {"Open email or archive", "打开邮件或存档"};

// Errors
inline constexpr Phrase tooLarge = {
    "This message exceeds the 32 MiB reading or parsing limit. Other archive messages remain available.",
    "这封邮件超过 32 MiB 读取或解析上限，不影响存档中的其他邮件。"};
inline constexpr Phrase malformed = {
    "This file could not be read. Check that it is a complete, supported email file.",
    "未能读取文件，请确认它是完整且受支持的邮件文件。"};
inline constexpr Phrase unsupported = {"Choose an EML, EMLX, MSG/OFT, MBOX/MBX, or Maildir file.",
                                       "请选择 EML、EMLX、MSG/OFT、MBOX/MBX 或 Maildir 文件。"};
inline constexpr Phrase tooMany = {"This file contains more messages or parts than can be opened safely.",
                                   "文件包含过多邮件或 MIME 部分，无法安全打开。"};
inline constexpr Phrase cancelled = {"Opening cancelled.", "已取消打开。"};
inline constexpr Phrase sourceChanged = {"The source file changed. Reopen it to update the message list.",
                                         "源文件已发生变化，请重新打开以更新邮件列表。"};
inline constexpr Phrase unsafeDestination = {
    "Choose another destination to keep open source files unchanged.",
    "请选择其他保存位置，以保留正在打开的源文件。"};
inline constexpr Phrase fileFailed = {
    "Could not read or save the file. Check its location and access permissions.",
    "未能读取或保存文件，请检查位置及访问权限。"};
inline constexpr Phrase fileMissing = {
    "The file is no longer there. It may have been moved, renamed or deleted.",
    "文件已不存在，可能已被移动、重命名或删除。"};
inline constexpr Phrase mayNotRead = {"You do not have permission to read this file.",
                                      "你没有读取此文件的权限。"};
inline constexpr Phrase mayNotSave = {"You do not have permission to save here. Choose another folder.",
                                      "没有在此处保存的权限，请选择其他文件夹。"};
inline constexpr Phrase diskFull = {"The disk is full. Free some space and try again.",
                                    "磁盘空间已满，请释放空间后重试。"};

} // namespace Texts
} // namespace TesselMail
