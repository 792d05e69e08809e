// Actions on the device's environment rather than on the library: properties, files, the
// clocks, scheduled steps and signals.
#include "sim/EnvActions.h"

#include <errno.h>
#include <signal.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "hostctl/Properties.h"

namespace camext {
namespace sim {

std::string hostPath(const Session& session, const std::string& devicePath) {
    std::string root = session.options().deviceRoot;
    while (!root.empty() && root.back() == '/') root.pop_back();
    return devicePath.empty() || devicePath[0] != '/' ? root + "/" + devicePath : root + devicePath;
}

bool writeDeviceFile(const Session& session, const std::string& devicePath, const std::string& text,
                     std::string* error) {
    const std::filesystem::path p = hostPath(session, devicePath);
    std::error_code ec;
    std::filesystem::create_directories(p.parent_path(), ec);
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out << text;
    out.close();
    if (!out) {
        *error = "cannot write " + devicePath + " under the device root";
        return false;
    }
    return true;
}

void actSetProperties(Session&, StepRun& run) {
    for (const auto& m : run.step.args.members()) {
        if (m.second.isNull()) {
            hostctl::removeProperty(m.first);
        } else {
            hostctl::setProperty(m.first, m.second.asString());
        }
    }
}

void actWriteFiles(Session& session, StepRun& run) {
    for (const auto& m : run.step.args.members()) {
        if (m.second.isNull()) {
            std::error_code ec;
            std::filesystem::remove(hostPath(session, m.first), ec);
            run.call("delete " + m.first);
            continue;
        }
        std::string error;
        if (!writeDeviceFile(session, m.first, m.second.asString(), &error)) {
            run.problem = error;
            return;
        }
        run.call("write " + m.first + " (" + std::to_string(m.second.asString().size()) + " bytes)");
    }
}

void actAdvanceClock(Session& session, StepRun& run) {
    const double ms = run.step.args["seconds"].asDouble() * 1000.0 + run.step.args["ms"].asDouble();
    session.advanceTo(session.now() + static_cast<nsecs_t>(ms * 1e6));
}

void actSchedule(Session& session, StepRun& run) {
    if (!run.step.inner) return;
    session.schedule(*run.step.inner, run.step.afterMs);
}

void actSignal(Session&, StepRun& run) {
    const int signo = static_cast<int>(run.step.args["signo"].asInt());
    siginfo_t info;
    memset(&info, 0, sizeof(info));
    info.si_signo = signo;
    info.si_code = static_cast<int>(run.step.args["code"].asInt());
    info.si_pid = getpid();
    info.si_uid = getuid();
    info.si_value.sival_int = static_cast<int>(run.step.args["value"].asInt());
    // Queued to this very thread, as the driver's signal interrupts the process: the handler has
    // run by the time the call returns.
    long rc = syscall(SYS_rt_tgsigqueueinfo, getpid(), static_cast<pid_t>(syscall(SYS_gettid)),
                      signo, &info);
    if (rc != 0) {
        run.problem = std::string("cannot queue the signal: ") + strerror(errno);
        return;
    }
    run.call("signal " + std::to_string(signo) + " delivered (code " +
             std::to_string(info.si_code) + ")");
}

}  // namespace sim
}  // namespace camext
