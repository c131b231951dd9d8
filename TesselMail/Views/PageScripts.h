#pragma once

#include "MailCore/Rendering/PageParts.h"

#include <string_view>

/// What runs in the reading page, in a world of its own: bodies of asynchronous functions with named
/// arguments.
namespace TesselMail::PageScripts {

/// Puts a message, or only another theme, paper and size, in the place of what is shown. Arguments: `body`,
/// `stylesheet`, `replace`, `dark`, `paper`, `fontSize`.
inline constexpr std::string_view updateScript = R"(if (replace) {
  const fragment = document.createElement('template');
  fragment.innerHTML = body;
  window.getSelection()?.removeAllRanges();
  const wrapper = document.createElement('div');
  wrapper.className = 'mail-content';
  wrapper.append(fragment.content);
  document.body.replaceChildren(wrapper);
  document.getElementById('mail-styles').textContent = stylesheet;
  window.scrollTo(0, 0);
}
document.documentElement.dataset.theme = dark ? 'dark' : 'light';
document.documentElement.style.setProperty('--paper', paper);
document.body.style.fontSize = fontSize + 'px';
document.documentElement.style.setProperty('--mail-scale', fontSize / 16);
return true;)";

// It is to be read whole, and names what the page is made of.
constexpr bool scriptNames(std::string_view part) {
    return updateScript.find(part) != std::string_view::npos;
}
static_assert(scriptNames(MailCore::PageParts::contentClass) && scriptNames(MailCore::PageParts::stylesID) &&
              scriptNames(MailCore::PageParts::paperProperty) &&
              scriptNames(MailCore::PageParts::scaleProperty) && MailCore::PageParts::baseFontSize == 16);

/// Where the link `href` stands.
inline constexpr std::string_view locateScript =
    "const a=[...document.links].find(a=>a.getAttribute('href')===href); if(!a)return null; const "
    "r=a.getBoundingClientRect(); return {x:r.x,y:r.y,width:r.width,height:r.height};";

/// Moves the focus to the next link, or without `forward` to the one before. One that cannot be seen takes
/// none.
inline constexpr std::string_view focusScript = R"(const links = [...document.links];
if (!forward) links.reverse();
for (const link of links.slice(links.indexOf(document.activeElement) + 1)) {
  link.focus({focusVisible: true});
  if (document.activeElement === link) return {href: link.getAttribute('href'), text: link.innerText.slice(0, 2048)};
}
document.activeElement?.blur();
return null;)";

} // namespace TesselMail::PageScripts
