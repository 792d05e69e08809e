// Events of the device's other processes: a binder's owner dies, the magnetic sensor fires.
#include <string>

#include "hostctl/Binder.h"
#include "hostctl/Services.h"
#include "sim/Actions.h"

namespace camext {
namespace sim {

void actBinderDied(Session&, StepRun& run) {
    const std::string name = run.step.args.asString();
    // A platform service's process dying is the same event for its clients.
    if (hostctl::isServiceRunning(name)) {
        hostctl::killService(name);
        run.call("service " + quote(name) + " died");
        return;
    }
    if (hostctl::findBinder(name) == nullptr) {
        run.problem = "no binder named " + quote(name) + " was handed out";
        return;
    }
    if (!hostctl::killBinder(name)) {
        run.problem = "binder " + quote(name) + " is already dead";
        return;
    }
    run.call("binder " + quote(name) + " died; its death recipients were told");
}

void actSensorEvent(Session&, StepRun& run) {
    const Json& a = run.step.args;
    hostctl::SensorEventSpec event;
    if (a.has("data")) {
        for (size_t i = 0; i < a["data"].size() && i < event.data.size(); ++i) {
            event.data[i] = static_cast<float>(a["data"].items()[i].asDouble());
        }
    }
    if (a.has("data3")) event.data[3] = static_cast<float>(a["data3"].asDouble());
    std::string error;
    const int told = hostctl::deliverSensorEvent(event, &error);
    if (told < 0) {
        run.problem = "the magnetic sensor event was not delivered: " + error;
        return;
    }
    run.call("magnetic sensor event delivered to " + std::to_string(told) + " queue" +
             (told == 1 ? "" : "s"));
}

}  // namespace sim
}  // namespace camext
