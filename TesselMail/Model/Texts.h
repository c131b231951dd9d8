#pragma once

#include <string_view>

namespace TesselMail {

/// One visible text in both languages of the interface; Preferences::text picks one.
struct Text {
    std::string_view english;
    std::string_view chinese;

    bool operator==(const Text&) const = default;

    /// The text in Simplified Chinese or in English.
    constexpr std::string_view in(bool inChinese) const noexcept { return inChinese ? chinese : english; }
};

/// Every text the application shows.
namespace Texts {

inline constexpr Text applicationName = {"Tessel Mail", "Tessel Mail"};

// Commands
inline constexpr Text open = {"Open…", "打开…"};
inline constexpr Text openFolder = {"Open folder…", "打开文件夹…"};
inline constexpr Text openHelp = {"Open (Ctrl+O)", "打开 (Ctrl+O)"};
inline constexpr Text openMore = {"More ways to open", "更多打开方式"};
inline constexpr Text openFiles = {"Open files…", "打开文件…"};
inline constexpr Text closeFile = {"Close file", "关闭文件"};
inline constexpr Text closeAll = {"Close all files", "关闭所有文件"};
inline constexpr Text exportOriginal = {"Export original…", "导出原始邮件…"};
inline constexpr Text exportOriginalHelp = {"Export original", "导出原始邮件"};
inline constexpr Text messageDetails = {"Message details", "邮件详情"};
inline constexpr Text about = {"About Tessel Mail", "关于 Tessel Mail"};
inline constexpr Text quit = {"Quit", "退出"};
inline constexpr Text nextMessage = {"Next message", "下一封邮件"};
inline constexpr Text previousMessage = {"Previous message", "上一封邮件"};
inline constexpr Text nextPane = {"Next pane", "下一个窗格"};
inline constexpr Text back = {"Back", "返回"};
inline constexpr Text previousPane = {"Previous pane", "上一个窗格"};
inline constexpr Text closeWindow = {"Close window", "关闭窗口"};
inline constexpr Text keyboardShortcuts = {"Keyboard shortcuts", "键盘快捷键"};
inline constexpr Text files = {"Files", "文件"};
inline constexpr Text window = {"Window", "窗口"};
inline constexpr Text menu = {"Main menu", "主菜单"};
inline constexpr Text cancel = {"Cancel", "取消"};
inline constexpr Text ok = {"OK", "好"};
inline constexpr Text save = {"Save", "保存"};
inline constexpr Text aboutText = {"A calm place for your mail.", "安心阅读，轻松接住邮件链接。"};

// Panels
inline constexpr Text openPrompt = {"Open", "打开"};
inline constexpr Text openTitle = {"Choose email files, a mailbox archive, or a Maildir folder.",
                                   "选择邮件文件、邮箱存档或 Maildir 文件夹。"};
inline constexpr Text mailFiles = {"Email files and archives", "邮件文件与存档"};
inline constexpr Text allFiles = {"All files", "所有文件"};

// Opening
inline constexpr Text opening = {"Opening…", "正在打开…"};
inline constexpr Text freeIndexMemory = {"Close an archive to free index memory.",
                                         "请关闭存档以释放索引内存。"};
inline constexpr Text fileLeft = {"{} file was not opened: at most 20 are opened at a time.",
                                  "还有 {} 个文件未打开：一次最多打开 20 个。"};
inline constexpr Text filesLeft = {"{} files were not opened: at most 20 are opened at a time.",
                                   "还有 {} 个文件未打开：一次最多打开 20 个。"};
inline constexpr Text couldNotComplete = {"Could not complete this action", "未能完成操作"};

// Sidebar and list
inline constexpr Text openedFiles = {"Open files", "已打开的文件"};
inline constexpr Text messageCount = {" messages", " 封邮件"}; // after the count
inline constexpr Text messages = {"Messages", "邮件"};
inline constexpr Text messageOrder = {"Message order", "邮件顺序"};
inline constexpr Text newestFirst = {"Newest first", "最新优先"};
inline constexpr Text noSubject = {"(No subject)", "（无主题）"};
inline constexpr Text noSender = {"(No sender)", "（无发件人）"};
inline constexpr Text noMessages = {"No messages", "没有邮件"};
inline constexpr Text limitReached = {
    "Partial list: the in-memory index limit was reached. Close other archives "
    "and reopen to free space.",
    "列表尚不完整：已达到内存索引上限。可关闭其他存档后重新打开以释放空间。"};
inline constexpr Text interrupted = {"Indexing stopped. Reopen the archive to read the remaining messages.",
                                     "索引已停止，重新打开存档可继续读取其余邮件。"};

// Reading
inline constexpr Text from = {"From", "发件人"};
inline constexpr Text to = {"To", "收件人"};
inline constexpr Text cc = {"Cc", "抄送"};
inline constexpr Text date = {"Date", "日期"};
inline constexpr Text attachments = {"Attachments", "附件"};
inline constexpr Text messageBody = {"Message", "正文"};
inline constexpr Text readingMessage = {"Reading message", "正在读取邮件"};
inline constexpr Text selectMessage = {"Select a message", "选择一封邮件"};
inline constexpr Text selectMessageHint = {"Choose a message to read it here.", "在列表中选择邮件即可阅读。"};
inline constexpr Text tooLargeToPreview = {"Message too large to preview", "邮件过大，暂不预览"};
inline constexpr Text tooLargeToPreviewHint = {
    "This message exceeds the 32 MiB preview limit. Use Export original to save it without this limit.",
    "这封邮件超过 32 MiB 预览上限，可通过“导出原始邮件”完整保存，不受此上限限制。"};
inline constexpr Text notShown = {"This message is not shown", "这封邮件未能显示"};
inline constexpr Text tryAgain = {"Try again", "重试"};
inline constexpr Text reopen = {"Reopen", "重新打开"};
inline constexpr Text noPlainText = {"This message has no plain text.", "这封邮件没有纯文本内容。"};
inline constexpr Text showPlainText = {"Show as plain text", "以纯文本显示"};
inline constexpr Text selectAll = {"Select All", "全选"};
inline constexpr Text plainWithoutSandbox = {
    "This system does not allow the sandbox that the reading view needs. Messages are shown as plain text.",
    "此系统不允许阅读视图所需的沙盒，邮件以纯文本显示。"};
inline constexpr Text plainWithoutRules = {
    "The rules that keep the reading view offline could not be stored in your cache folder. Messages are "
    "shown as plain text.",
    "无法在缓存文件夹中存储使阅读视图保持离线的规则，邮件以纯文本显示。"};
inline constexpr Text plainWithoutAnswer = {
    "The reading view could not update. The message is shown as plain text.",
    "阅读视图未能更新，邮件以纯文本显示。"};
inline constexpr Text saveAttachment = {"Save attachment…", "保存附件…"};
inline constexpr Text readAttachedMessage = {"Read attached message", "阅读附加邮件"};
inline constexpr Text unavailable = {"Unavailable in this message", "无法读取此附件"};
inline constexpr Text attachedMessage = {"Attached message", "附加邮件"};
inline constexpr Text embeddedObject = {"Embedded object · Save only", "嵌入对象 · 仅供保存"};
inline constexpr Text viewNotUpdated = {"The reading view could not update. Try opening the message again.",
                                        "阅读视图未能更新，请尝试重新打开这封邮件。"};
inline constexpr Text viewNotOpened = {"The reading view could not open. Try opening the message again.",
                                       "阅读视图未能打开，请尝试重新打开这封邮件。"};
inline constexpr Text viewStopped = {"The reading view stopped. Try opening the message again.",
                                     "阅读视图已停止，请尝试重新打开这封邮件。"};

// Links
inline constexpr Text link = {"Link", "链接"};
inline constexpr Text linkAddress = {"URL", "URL"};
inline constexpr Text copyLink = {"Copy link", "复制链接"};
inline constexpr Text emailLink = {"Email link", "邮件链接"};
inline constexpr Text bcc = {"Bcc", "密送"};
inline constexpr Text subject = {"Subject", "主题"};
inline constexpr Text copyAddress = {"Copy address", "复制地址"};
inline constexpr Text copyMessage = {"Copy message", "复制邮件内容"};
inline constexpr Text telephone = {"Telephone", "电话号码"};
inline constexpr Text number = {"Number", "号码"};
inline constexpr Text copyNumber = {"Copy number", "复制号码"};
inline constexpr Text textMessage = {"Text message", "短信"};
inline constexpr Text textMessageBody = {"Message", "内容"};
inline constexpr Text copyTextMessage = {"Copy message", "复制短信内容"};
inline constexpr Text copied = {"Copied", "已复制"};
inline constexpr Text copyValue = {"Copy", "复制"};
inline constexpr Text close = {"Close", "关闭"};

// A captured link
inline constexpr Text capturedLink = {"Captured link", "已接住的链接"};
inline constexpr Text copyDetails = {"Copy details", "复制内容"};
inline constexpr Text copyOriginalLink = {"Copy original link", "复制原始链接"};
inline constexpr Text nothingSent = {"Nothing sent.", "没有发送邮件。"};
inline constexpr Text onlyHeld = {
    "This link is only held in this window. You can copy what you need, or simply close it.",
    "链接仅保留在当前窗口中。可以复制需要的内容，也可以直接关闭。"};

// Searching
inline constexpr Text searchMessages = {"Search messages", "搜索邮件"};
inline constexpr Text searching = {"Searching…", "正在搜索…"};
inline constexpr Text shownIsNoResult = {"The message shown is not among the results.",
                                         "显示的邮件不在搜索结果中。"};
inline constexpr Text unreadable = {" messages could not be searched.",
                                    " 封邮件未能搜索。"}; // after the count

// Settings
inline constexpr Text settings = {"Settings", "设置"};
inline constexpr Text readingSettings = {"Reading", "阅读"};
inline constexpr Text language = {"Language", "语言"};
inline constexpr Text automatic = {"Automatic", "自动"};
inline constexpr Text english = {"English", "English"};
inline constexpr Text simplifiedChinese = {"简体中文", "简体中文"};
inline constexpr Text appearance = {"Appearance", "外观"};
inline constexpr Text light = {"Light", "浅色"};
inline constexpr Text dark = {"Dark", "深色"};
inline constexpr Text textSize = {"Reading text size", "正文字号"};
inline constexpr Text emailLinks = {"Email links", "邮件链接"};
inline constexpr Text emailLinksHint = {
    "Open email links here, without opening a compose window or connecting an account.",
    "在此接住邮件链接，无需打开撰写窗口或连接邮箱账号。"};
inline constexpr Text becomeHandler = {"Use Tessel Mail for email links…", "使用 Tessel Mail 打开邮件链接…"};
inline constexpr Text becomeHandlerQuestion = {"Use Tessel Mail for email links?",
                                               "使用 Tessel Mail 打开邮件链接？"};
inline constexpr Text becomeHandlerHint = {
    "This changes the default app for mailto links. You can change it later in another email app.",
    "这将更改 mailto 链接的默认打开应用。之后可在其他邮件应用中重新设置。"};
inline constexpr Text becomeHandlerAnswer = {"Use Tessel Mail", "使用 Tessel Mail"};
inline constexpr Text handlerSet = {"Tessel Mail now opens email links.",
                                    "邮件链接现在由 Tessel Mail 打开。"};
inline constexpr Text handlerFailed = {"Could not change the default app. Try after installing Tessel Mail.",
                                       "未能更改默认应用，请安装 Tessel Mail 后重试。"};
inline constexpr Text privacy = {"Privacy", "隐私"};
inline constexpr Text privacyHeadline = {"Mail stays on your computer.", "邮件留在你的电脑上。"};
inline constexpr Text privacyText = {
    "Remote images, scripts, and automatic attachment opening are blocked. No accounts, sending, "
    "tracking, or cloud uploads.",
    "不加载远程图片，不运行脚本，不自动打开附件。不连接账号、不发送邮件，也无追踪或云端上传。"};
inline constexpr Text captureSetUp = {"Set up email link capture…", "设置邮件链接接管…"};

// Welcome
inline constexpr Text welcomeLine = {"A calm place for your mail.", "安心阅读，轻松接住邮件链接。"};
inline constexpr Text welcomeDrop = {"Drop files here to read them on your computer.",
                                     "将文件拖到这里，在电脑上直接阅读。"};
inline constexpr Text welcomeFormats = {"EML / EMLX / MSG / OFT / MBOX / Maildir",
                                        "EML / EMLX / MSG / OFT / MBOX / Maildir"};
inline constexpr Text openMail = {"Open email or archive", "打开邮件或存档"};

// Errors
inline constexpr Text tooLarge = {
    "This message exceeds the 32 MiB reading or parsing limit. Other archive messages remain available.",
    "这封邮件超过 32 MiB 读取或解析上限，不影响存档中的其他邮件。"};
inline constexpr Text malformed = {
    "This file could not be read. Check that it is a complete, supported email file.",
    "未能读取文件，请确认它是完整且受支持的邮件文件。"};
inline constexpr Text unsupported = {"Choose an EML, EMLX, MSG/OFT, MBOX/MBX, or Maildir file.",
                                     "请选择 EML、EMLX、MSG/OFT、MBOX/MBX 或 Maildir 文件。"};
inline constexpr Text tooMany = {"This file contains more messages or parts than can be opened safely.",
                                 "文件包含过多邮件或 MIME 部分，无法安全打开。"};
inline constexpr Text cancelled = {"Opening cancelled.", "已取消打开。"};
inline constexpr Text sourceChanged = {"The source file changed. Reopen it to update the message list.",
                                       "源文件已发生变化，请重新打开以更新邮件列表。"};
inline constexpr Text unsafeDestination = {"Choose another destination to keep open source files unchanged.",
                                           "请选择其他保存位置，以保留正在打开的源文件。"};
inline constexpr Text fileFailed = {
    "Could not read or save the file. Check its location and access permissions.",
    "未能读取或保存文件，请检查位置及访问权限。"};
inline constexpr Text fileMissing = {
    "The file is no longer there. It may have been moved, renamed or deleted.",
    "文件已不存在，可能已被移动、重命名或删除。"};
inline constexpr Text mayNotRead = {"You do not have permission to read this file.",
                                    "你没有读取此文件的权限。"};
inline constexpr Text mayNotSave = {"You do not have permission to save here. Choose another folder.",
                                    "没有在此处保存的权限，请选择其他文件夹。"};
inline constexpr Text diskFull = {"The disk is full. Free some space and try again.",
                                  "磁盘空间已满，请释放空间后重试。"};

} // namespace Texts
} // namespace TesselMail
