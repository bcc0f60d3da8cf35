// The check that "Image size" and "Canvas size" make on OK, and the box they show.
#pragma once

#include <QString>

#include <cstdint>

class QWidget;

namespace ostrivex {

inline constexpr const char* kMinimumSizeText = "Minimum size: 2 x 2";
// Our own limit: a side of more than 32767 pixels is refused before any buffer is made
// (the fields hold five digits, and a buffer of that side already takes gigabytes).
inline constexpr const char* kMaximumSizeText = "Maximum size: 32767 x 32767";
inline constexpr int32_t kMaximumSide = 32767;
inline constexpr const char* kSizeMessageTitle = "Ostrivex";

// Reads the two fields. With numbers of 2 to kMaximumSide sets w and h and returns true;
// otherwise shows the minimum-size box (fields that are not numbers, or below 2) or the
// maximum-size box, and returns false.
bool CheckSizeFields(QWidget* parent, const QString& width, const QString& height, int32_t& w,
                     int32_t& h);

} // namespace ostrivex
