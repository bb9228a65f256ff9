#pragma once
// Many small pictures on one, each with a number below it.
#include "host/runner/session.h"

namespace zam::cli {

class Sheet {
  public:
    static constexpr int kGap = 8, kLabel = 10;  // pixels: around pictures, and the height of a number

    // Empty places for `count` pictures of 8 bits, in rows from the top left. All are at least 1.
    Sheet(int count, int columns, int picture_width, int picture_height);

    // What such a sheet would measure.
    [[nodiscard]] static int width(int columns, int picture_width);
    [[nodiscard]] static int height(int count, int columns, int picture_height);

    // The picture has the sheet's size of pictures. May be called on several threads at once, for different places.
    void put(int place, const host::Frame& picture, int number);

    [[nodiscard]] const host::Frame& image() const { return image_; }

  private:
    void put_number(int x, int y, int number);
    [[nodiscard]] std::uint16_t* pixel(int x, int y);

    int columns_, picture_width_, picture_height_;
    host::Frame image_;
};

}  // namespace zam::cli
