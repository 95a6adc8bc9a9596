#pragma once

namespace Dravo {

// Registers the compiled-in images under ":/res_ui/" (skins, busy strip) and ":/res/img/"
// (icons, logos, the forms' progress strip). Safe to call more than once.
void initUiResources();

}  // namespace Dravo
