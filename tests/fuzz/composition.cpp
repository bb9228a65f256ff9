// Our own scenes: JSON text to composition.
#include "host/runner/control.h"
#include "io/composition_reader.h"
#include "tests/fuzz/effect_controls.h"
#include "tests/fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zam;
    try {
        const auto composition =
            io::read_composition(io::parse_json("scene.json", fuzz::text_of(data, size)));
        fuzz::require_valid(composition);
        for (const host::ControlSetting& setting : composition.effect.controls)
            fuzz::require_resolves(setting, composition);
    } catch (const io::SceneError& error) {
        fuzz::require_clear_message(error.what());
        fuzz::require(std::string(error.what()).starts_with("scene.json:"), "a refusal tells the place");
    }
    return 0;
}
