#include "operations/operations.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace ostrivex {

const OperationParam* Operation::Param(std::string_view paramName) const {
    for (const OperationParam& p : params)
        if (paramName == p.name) return &p;
    return nullptr;
}

const std::vector<Operation>& Operations() {
    static const std::vector<Operation> all = [] {
        std::vector<Operation> out;
        for (auto family : {TransformOperations, ToneOperations, NeighbourhoodOperations,
                            DeformOperations, ArtisticOperations, PaintOperations}) {
            std::vector<Operation> part = family();
            std::move(part.begin(), part.end(), std::back_inserter(out));
        }
        return out;
    }();
    return all;
}

const Operation* FindOperation(std::string_view name) {
    for (const Operation& op : Operations())
        if (name == op.name) return &op;
    return nullptr;
}

const OperationParam& OperationParameter(std::string_view operation, std::string_view param) {
    const Operation* op = FindOperation(operation);
    const OperationParam* p = op ? op->Param(param) : nullptr;
    if (!p) {
        std::fprintf(stderr, "no parameter %.*s of operation %.*s\n", int(param.size()),
                     param.data(), int(operation.size()), operation.data());
        std::abort();
    }
    return *p;
}

ThumbSize FitThumbnail(int32_t width, int32_t height, int32_t maxWidth, int32_t maxHeight) {
    if (width <= 0 || height <= 0) return {};
    // A small picture is shown at its own size: enlarged by nearest neighbour it would
    // only show blocks, and the filters would see those blocks instead of its pixels.
    if (width <= maxWidth && height <= maxHeight) return {width, height};
    return FitToBox(width, height, maxWidth, maxHeight);
}

float ColorizeHue(int32_t slider) {
    // Rounded to nearest, ties to even, in the default rounding mode.
    int32_t x = int32_t(std::nearbyint(slider * 2.4));
    if (x >= 201) x -= 240;
    return float(x / 40.0);
}

float ThumbnailExtension(int32_t slider, int32_t imageWidth, int32_t imageHeight) {
    const ThumbSize t = FitThumbnail(imageWidth, imageHeight);
    const int32_t side = std::max(t.width, t.height);
    return side > 0 ? float(slider) / float(side) : 0.0f;
}

} // namespace ostrivex
