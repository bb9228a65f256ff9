// Presets: JSON text to settings of controls.
#include "io/control_settings.h"
#include "io/effect_layer.h"
#include "io/scene_error.h"
#include "tests/fuzz/effect_controls.h"
#include "tests/fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zam;
    host::Composition composition;
    io::add_effect_layer(composition);
    try {
        const std::string file = fuzz::file_of(fuzz::text_of(data, size), "preset.json");
        const auto settings = io::read_preset(file, 24.0);
        fuzz::require_valid(settings);
        for (const host::ControlSetting& setting : settings) fuzz::require_resolves(setting, composition);
    } catch (const io::SceneError& error) {
        fuzz::require_clear_message(error.what());
    }
    return 0;
}
