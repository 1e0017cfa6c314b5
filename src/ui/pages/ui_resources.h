#pragma once
// The application's compiled-in resources (images, style sheet) live in this static library; an
// executable registers them once before the first widget.

namespace nal {

void ui_register_resources();

}  // namespace nal
