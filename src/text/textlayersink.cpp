#include "text/textlayersink.h"

namespace ostrivex {

namespace {
TextLayerSink* installedSink = nullptr;
}

TextLayerSink* GetTextLayerSink() {
    return installedSink;
}
void SetTextLayerSink(TextLayerSink* sink) {
    installedSink = sink;
}

} // namespace ostrivex
