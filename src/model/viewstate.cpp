#include "model/viewstate.h"

#include <algorithm>

namespace ostrivex {

void ViewState::SetZoomIndex(int32_t index) {
    ZoomIndex = std::clamp<int32_t>(index, 1, kMaxZoomIndex);
    Reduction = 1;
}

bool ViewState::ZoomIn() {
    if (Reduction > 1) {
        // The next smaller reduction, or 1 : 1 after 1 : 2.
        const auto it = std::find(kReductions.begin(), kReductions.end(), Reduction);
        Reduction = (it == kReductions.begin() || it == kReductions.end()) ? 1 : *(it - 1);
        ZoomIndex = 1;
        return true;
    }
    if (ZoomIndex >= kMaxZoomIndex) return false;
    ++ZoomIndex;
    return true;
}

bool ViewState::ZoomOut() {
    if (Reduction <= 1 && ZoomIndex > 1) {
        --ZoomIndex;
        return true;
    }
    const auto it = std::upper_bound(kReductions.begin(), kReductions.end(), Reduction);
    if (it == kReductions.end()) return false;
    Reduction = *it;
    ZoomIndex = 1;
    return true;
}

void ViewState::Fit(int32_t w, int32_t h, int32_t viewW, int32_t viewH) {
    if (w < 1 || h < 1 || viewW < 1 || viewH < 1) return;
    for (int32_t z = kMaxZoomIndex; z >= 1; --z)
        if (int64_t(w) * z <= viewW && int64_t(h) * z <= viewH) {
            SetZoomIndex(z);
            return;
        }
    ZoomIndex = 1;
    Reduction = kReductions.back();
    for (int32_t r : kReductions)
        if ((w + r - 1) / r <= viewW && (h + r - 1) / r <= viewH) {
            Reduction = r;
            return;
        }
}

bool ViewState::SetScale(ViewScale scale) {
    if (scale.den == 1 && scale.num >= 1 && scale.num <= kMaxZoomIndex) {
        SetZoomIndex(scale.num);
        return true;
    }
    if (scale.num == 1 &&
        std::find(kReductions.begin(), kReductions.end(), scale.den) != kReductions.end()) {
        ZoomIndex = 1;
        Reduction = scale.den;
        return true;
    }
    return false;
}

QString ViewState::ZoomText() const {
    const ViewScale s = Scale();
    return QStringLiteral("%1 : %2").arg(s.num).arg(s.den);
}

} // namespace ostrivex
