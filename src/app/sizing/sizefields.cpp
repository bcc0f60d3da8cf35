#include "app/sizing/sizefields.h"

#include "document/dialogs.h"

namespace ostrivex {

bool CheckSizeFields(QWidget* parent, const QString& width, const QString& height, int32_t& w,
                     int32_t& h) {
    bool okW = false, okH = false;
    const qlonglong vw = width.trimmed().toLongLong(&okW);
    const qlonglong vh = height.trimmed().toLongLong(&okH);
    if (!okW || !okH || vw < 2 || vh < 2) {
        DocumentDialogs::Inform(parent, kMinimumSizeText, kSizeMessageTitle);
        return false;
    }
    if (vw > kMaximumSide || vh > kMaximumSide) {
        DocumentDialogs::Inform(parent, kMaximumSizeText, kSizeMessageTitle);
        return false;
    }
    w = int32_t(vw);
    h = int32_t(vh);
    return true;
}

} // namespace ostrivex
