#pragma once

namespace tam {

/// Shows the about box: title, version and logo of the component.
void ShowAboutBox();

} // namespace tam
