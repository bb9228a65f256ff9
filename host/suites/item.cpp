// Items: the sources of layers, and the composition itself.
#include "host/suites/serve.h"
#include "host/suites/tables.h"

namespace zam::host {
namespace {

// The item's own data; null for the composition.
const Item* source_item(Instance& in, AEGP_ItemH handle) {
    const ItemId id = in.item(handle);
    return id == Instance::kCompItem ? nullptr : in.composition.find_item(id);
}

A_Err get_active_item(AEGP_ItemH* item) {
    return serve("Item.AEGP_GetActiveItem",
                 [&](Instance& in) { result(item) = in.item_handle(Instance::kCompItem); });
}

A_Err get_item_type(AEGP_ItemH item, AEGP_ItemType* type) {
    return serve("Item.AEGP_GetItemType", [&](Instance& in) {
        result(type) = source_item(in, item) ? AEGP_ItemType_FOOTAGE : AEGP_ItemType_COMP;
    });
}

A_Err get_item_name(AEGP_ItemH item, A_char* name) {
    return serve("Item.AEGP_GetItemName", [&](Instance& in) {
        const Item* source = source_item(in, item);
        write_name(&required(name), source ? source->name : in.composition.name);
    });
}

A_Err get_item_id(AEGP_ItemH item, A_long* id) {
    return serve("Item.AEGP_GetItemID", [&](Instance& in) { result(id) = in.item(item); });
}

A_Err get_item_duration(AEGP_ItemH item, A_Time* duration) {
    return serve("Item.AEGP_GetItemDuration", [&](Instance& in) {
        result(duration) =
            in.time(source_item(in, item) ? 0.0 : in.composition.duration);  // solids are stills
    });
}

A_Err get_item_current_time(AEGP_ItemH item, A_Time* time) {
    return serve("Item.AEGP_GetItemCurrentTime", [&](Instance& in) {
        result(time) = in.time(source_item(in, item) ? 0.0 : in.command_frame);
    });
}

A_Err get_item_dimensions(AEGP_ItemH item, A_long* width, A_long* height) {
    return serve("Item.AEGP_GetItemDimensions", [&](Instance& in) {
        const Item* source = source_item(in, item);
        result(width) = source ? source->width : in.composition.width;
        result(height) = source ? source->height : in.composition.height;
    });
}

A_Err get_item_pixel_aspect(AEGP_ItemH item, A_Ratio* aspect) {
    return serve("Item.AEGP_GetItemPixelAspectRatio", [&](Instance& in) {
        const Ratio given = source_item(in, item) ? Ratio{} : in.composition.pixel_aspect;
        result(aspect) = {given.num, given.den};
    });
}

}  // namespace

const AEGP_ItemSuite1 kItemSuite3 = {
    .AEGP_GetNextItem = unserved<"Item.AEGP_GetNextItem">,
    .AEGP_GetActiveItem = get_active_item,
    .AEGP_IsItemSelected = unserved<"Item.AEGP_IsItemSelected">,
    .AEGP_SelectItem = unserved<"Item.AEGP_SelectItem">,
    .AEGP_GetItemType = get_item_type,
    .AEGP_GetTypeName = unserved<"Item.AEGP_GetTypeName">,
    .AEGP_GetItemName = get_item_name,
    .AEGP_GetItemID = get_item_id,
    .AEGP_GetItemFlags = unserved<"Item.AEGP_GetItemFlags">,
    .AEGP_SetItemUseProxy = unserved<"Item.AEGP_SetItemUseProxy">,
    .AEGP_GetItemParentFolder = unserved<"Item.AEGP_GetItemParentFolder">,
    .AEGP_GetItemDuration = get_item_duration,
    .AEGP_GetItemCurrentTime = get_item_current_time,
    .AEGP_GetItemDimensions = get_item_dimensions,
    .AEGP_GetItemPixelAspectRatio = get_item_pixel_aspect,
    .AEGP_DeleteItem = unserved<"Item.AEGP_DeleteItem">,
    .AEGP_GetItemSolidColor = unserved<"Item.AEGP_GetItemSolidColor">,
    .AEGP_CreateNewFolder = unserved<"Item.AEGP_CreateNewFolder">,
    .AEGP_SetItemCurrentTime = unserved<"Item.AEGP_SetItemCurrentTime">,
    .AEGP_RenderNewItemSoundData = unserved<"Item.AEGP_RenderNewItemSoundData">,
};

}  // namespace zam::host
