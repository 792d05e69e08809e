#include "sim/Actions.h"

#include <string.h>

#include "sim/EnvActions.h"

namespace camext {
namespace sim {

ActionFn findAction(const std::string& name) {
    static const struct {
        const char* name;
        ActionFn fn;
    } kActions[] = {
        {"open", actOpen},
        {"close", actClose},
        {"configure", actConfigure},
        {"request", actRequest},
        {"result", actResult},
        {"characteristics", actCharacteristics},
        {"transact", actTransact},
        {"hook", actHook},
        {"set_properties", actSetProperties},
        {"write_files", actWriteFiles},
        {"advance_clock", actAdvanceClock},
        {"schedule", actSchedule},
        {"binder_died", actBinderDied},
        {"sensor_event", actSensorEvent},
        {"signal", actSignal},
    };
    for (const auto& a : kActions) {
        if (name == a.name) return a.fn;
    }
    return nullptr;
}

}  // namespace sim
}  // namespace camext
