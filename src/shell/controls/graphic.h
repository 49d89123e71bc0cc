#pragma once

class QWidget;

namespace shell {

/// Has a widget that draws itself told as a graphic; what it shows stands in its accessible name and
/// description. To be called first: what it is told as is settled when it is named.
void tellAsGraphic(QWidget& widget);

} // namespace shell
