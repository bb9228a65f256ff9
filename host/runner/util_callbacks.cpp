// Memory handles, filling and iterating. Worlds are known by the address that the command gave out, and go by
// their own geometry.
#include <cstring>
#include <thread>

#include "host/runner/callbacks.h"
#include "host/suites/serve.h"

namespace zam::host {
namespace {

// ---- memory handles

PF_Handle host_new_handle(A_u_longlong size) {
    PF_Handle handle = nullptr;
    serve("Utils.host_new_handle", [&](Instance& in) { handle = in.memory.allocate(size); });
    return handle;
}

void* host_lock_handle(PF_Handle handle) {
    void* block = nullptr;
    const A_Err error =
        serve("Utils.host_lock_handle", [&](Instance& in) { block = in.memory.lock(handle); });
    if (Instance* in = error ? Instance::current() : nullptr) {
        const std::lock_guard lock(in->gate);
        in->memory.forgive_unlock(handle);  // an effect may unlock what it tried to lock, or not
    }
    return block;
}

void host_unlock_handle(PF_Handle handle) {
    serve(
        "Utils.host_unlock_handle", [&](Instance& in) { in.memory.unlock(handle); }, Door::giving_back);
}

void host_dispose_handle(PF_Handle handle) {
    serve(
        "Utils.host_dispose_handle", [&](Instance& in) { in.memory.dispose(handle); }, Door::giving_back);
}

A_u_longlong host_get_handle_size(PF_Handle handle) {
    A_u_longlong size = 0;
    serve("Utils.host_get_handle_size", [&](Instance& in) { size = in.memory.size(handle); });
    return size;
}

PF_Err host_resize_handle(A_u_longlong size, PF_Handle* handle) {
    return serve("Utils.host_resize_handle", [&](Instance& in) { in.memory.resize(required(handle), size); });
}

// ---- images

struct Area {
    A_long left, top, right, bottom;
    [[nodiscard]] bool empty() const { return right <= left || bottom <= top; }
};

Area clipped(const PF_Rect* area, const World& world) {
    if (!area) return {0, 0, world.width(), world.height()};
    return {std::max(0, area->left), std::max(0, area->top), std::min(world.width(), area->right),
            std::min(world.height(), area->bottom)};
}

// Row by row over the width of the area: what lies between rows is not the image's.
template <class Pixel>
void fill_area(const World& world, const Area& area, const Pixel& color) {
    for (A_long y = area.top; y < area.bottom; ++y) {
        std::uint8_t* to =
            world.row(y) + static_cast<std::ptrdiff_t>(area.left) * static_cast<int>(sizeof color);
        for (A_long x = area.left; x < area.right; ++x, to += sizeof color)
            std::memcpy(to, &color, sizeof color);
    }
}

A_u_short widened(A_u_char code) {
    return static_cast<A_u_short>((code * PF_MAX_CHAN16 + 127) / PF_MAX_CHAN8);
}

// Serves deep worlds as well, with the colour at their scale.
PF_Err fill(PF_ProgPtr effect_ref, const PF_Pixel* color, const PF_Rect* area, PF_EffectWorld* shown) {
    return serve("Utils.fill", [&](Instance& in) {
        in.check(effect_ref);
        const World& world = in.world(shown, "world");
        const PF_Pixel c = color ? *color : PF_Pixel{};
        if (world.deep()) {
            const PF_Pixel16 wide{widened(c.alpha), widened(c.red), widened(c.green), widened(c.blue)};
            fill_area(world, clipped(area, world), wide);
        } else {
            fill_area(world, clipped(area, world), c);
        }
    });
}

PF_Err fill16(PF_ProgPtr effect_ref, const PF_Pixel16* color, const PF_Rect* area, PF_EffectWorld* shown) {
    return serve("Utils.fill16", [&](Instance& in) {
        in.check(effect_ref);
        const World& world = in.world(shown, "world");
        if (!world.deep()) throw Misuse{"world of 8 bits per channel", PF_Err_BAD_CALLBACK_PARAM};
        fill_area(world, clipped(area, world), color ? *color : PF_Pixel16{});
    });
}

// One row of a pass. Whatever the function throws stays on this thread.
template <class Pixel>
PF_Err iterate_row(Instance& in, const char* call, const Area& area, A_long y, const World* src,
                   const World& dst, void* refcon,
                   PF_Err (*function)(void*, A_long, A_long, Pixel*, Pixel*)) {
    const Instance::Scope scope(&in);
    std::string thrown;
    try {
        auto* out = reinterpret_cast<Pixel*>(dst.row(y)) + area.left;
        auto* from = src ? reinterpret_cast<Pixel*>(src->row(y)) + area.left : nullptr;
        for (A_long x = area.left; x < area.right; ++x, ++out) {
            if (const PF_Err error = function(refcon, x, y, from, out)) return error;
            if (from) ++from;
        }
        return PF_Err_NONE;
    } catch (int value) {
        thrown = "the int " + std::to_string(value);
    } catch (const std::exception& exception) {
        thrown = std::string("an exception (") + exception.what() + ")";
    } catch (...) {
        thrown = "an unknown exception";
    }
    const std::lock_guard lock(in.gate);
    in.ledger.report("a row threw " + thrown + " in " + call);
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
}

template <class Pixel>
PF_Err iterate_pixels(std::string_view name, PF_InData* in_data, PF_EffectWorld* shown_src,
                      const PF_Rect* rect, void* refcon,
                      PF_Err (*function)(void*, A_long, A_long, Pixel*, Pixel*), PF_EffectWorld* shown_dst) {
    // The door stands open meanwhile: rows may call back.
    return serve(
        name,
        [&](Instance& in) {
            if (in_data != &in.in_data) {
                throw Misuse{in_data ? "foreign in_data" : "null in_data", PF_Err_BAD_CALLBACK_PARAM};
            }
            if (!function) throw Misuse{"null function", PF_Err_BAD_CALLBACK_PARAM};
            const World& dst = in.world(shown_dst, "destination");
            const World* src = shown_src ? &in.world(shown_src, "source") : nullptr;
            if (sizeof(Pixel) == sizeof(PF_Pixel16) && !dst.deep()) {
                throw Misuse{"world of 8 bits per channel", PF_Err_BAD_CALLBACK_PARAM};
            }
            Area area = clipped(rect, dst);
            if (src)
                area = {area.left, area.top, std::min(area.right, src->width()),
                        std::min(area.bottom, src->height())};
            if (area.empty()) return;
            const std::string call(function_name(name));
            const Instance::SeveralThreads threads(in);
            const PF_Err error = in.rows.run(area.top, area.bottom, [&](A_long y) {
                if (in.cancelled()) return PF_Err{PF_Interrupt_CANCEL};
                if (in.options.row_pause.count()) std::this_thread::sleep_for(in.options.row_pause);
                return iterate_row(in, call.c_str(), area, y, src, dst, refcon, function);
            });
            if (error) throw Refusal{error};
        },
        Door::open);
}

// The 8-bit entry serves deep worlds too: pixels are then found by their 8-bit places, which is right at x =
// 0.
PF_Err iterate(PF_InData* in_data, A_long, A_long, PF_EffectWorld* src, const PF_Rect* area, void* refcon,
               PF_IteratePixel8Func function, PF_EffectWorld* dst) {
    return iterate_pixels("Utils.iterate", in_data, src, area, refcon, function, dst);
}

PF_Err iterate16(PF_InData* in_data, A_long, A_long, PF_EffectWorld* src, const PF_Rect* area, void* refcon,
                 PF_IteratePixel16Func function, PF_EffectWorld* dst) {
    return iterate_pixels("Utils.iterate16", in_data, src, area, refcon, function, dst);
}

// The one call with a variable argument list that nothing stands behind.
PF_Err app(PF_ProgPtr, A_long, ...) {
    return serve("Utils.app", [](Instance&) { throw Refusal{PF_Err_INVALID_CALLBACK}; });
}

}  // namespace

PF_UtilCallbacks util_callbacks(bool handles) {
    PF_UtilCallbacks utils{};
    utils.begin_sampling = unserved<"Utils.begin_sampling">;
    utils.subpixel_sample = unserved<"Utils.subpixel_sample">;
    utils.area_sample = unserved<"Utils.area_sample">;
    utils.end_sampling = unserved<"Utils.end_sampling">;
    utils.composite_rect = unserved<"Utils.composite_rect">;
    utils.blend = unserved<"Utils.blend">;
    utils.convolve = unserved<"Utils.convolve">;
    utils.copy = unserved<"Utils.copy">;
    utils.fill = fill;
    utils.gaussian_kernel = unserved<"Utils.gaussian_kernel">;
    utils.iterate = iterate;
    utils.premultiply = unserved<"Utils.premultiply">;
    utils.premultiply_color = unserved<"Utils.premultiply_color">;
    utils.new_world = unserved<"Utils.new_world">;
    utils.dispose_world = unserved<"Utils.dispose_world">;
    utils.iterate_origin = unserved<"Utils.iterate_origin">;
    utils.iterate_lut = unserved<"Utils.iterate_lut">;
    utils.transfer_rect = unserved<"Utils.transfer_rect">;
    utils.transform_world = unserved<"Utils.transform_world">;
    if (handles) {
        utils.host_new_handle = host_new_handle;
        utils.host_lock_handle = host_lock_handle;
        utils.host_unlock_handle = host_unlock_handle;
        utils.host_dispose_handle = host_dispose_handle;
    }
    utils.get_callback_addr = unserved<"Utils.get_callback_addr">;
    utils.app = app;
    utils.ansi = ansi_callbacks();
    utils.colorCB.RGBtoHLS = unserved<"Color.RGBtoHLS">;
    utils.colorCB.HLStoRGB = unserved<"Color.HLStoRGB">;
    utils.colorCB.RGBtoYIQ = unserved<"Color.RGBtoYIQ">;
    utils.colorCB.YIQtoRGB = unserved<"Color.YIQtoRGB">;
    utils.colorCB.Luminance = unserved<"Color.Luminance">;
    utils.colorCB.Hue = unserved<"Color.Hue">;
    utils.colorCB.Lightness = unserved<"Color.Lightness">;
    utils.colorCB.Saturation = unserved<"Color.Saturation">;
    utils.get_platform_data = unserved<"Utils.get_platform_data">;
    utils.host_get_handle_size = host_get_handle_size;
    utils.iterate_origin_non_clip_src = unserved<"Utils.iterate_origin_non_clip_src">;
    utils.iterate_generic = unserved<"Utils.iterate_generic">;
    utils.host_resize_handle = host_resize_handle;
    utils.subpixel_sample16 = unserved<"Utils.subpixel_sample16">;
    utils.area_sample16 = unserved<"Utils.area_sample16">;
    utils.fill16 = fill16;
    utils.premultiply_color16 = unserved<"Utils.premultiply_color16">;
    utils.iterate16 = iterate16;
    utils.iterate_origin16 = unserved<"Utils.iterate_origin16">;
    utils.iterate_origin_non_clip_src16 = unserved<"Utils.iterate_origin_non_clip_src16">;
    utils.get_pixel_data8 = unserved<"Utils.get_pixel_data8">;
    utils.get_pixel_data16 = unserved<"Utils.get_pixel_data16">;
    return utils;
}

}  // namespace zam::host
