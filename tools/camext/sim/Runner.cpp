#include "sim/Runner.h"

#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "sim/Player.h"
#include "sim/Report.h"
#include "sim/Trace.h"

namespace camext {
namespace sim {

namespace {

// A scenario that sends nothing for this long is stuck (virtual time never waits for real).
constexpr int kSilenceLimitMs = 120 * 1000;

struct Outcome {
    std::vector<std::string> open;  // steps begun and not finished, innermost last
    bool ended = false;
    int steps = 0;
    int failedSteps = 0;
};

void track(const Json& r, Outcome* o) {
    const std::string type = r["type"].asString();
    if (type == "begin") o->open.push_back(r["path"].asString());
    if (type == "step") {
        if (!o->open.empty()) o->open.pop_back();
        ++o->steps;
        if (!r["ok"].asBool()) ++o->failedSteps;
    }
    if (type == "end") {
        o->ended = true;
        o->failedSteps += static_cast<int>(r["never_ran_with_expectations"].asInt());
    }
}

std::string describeStatus(int status) {
    if (WIFSIGNALED(status)) {
        const int sig = WTERMSIG(status);
        const char* name = sigabbrev_np(sig);
        return std::string("killed by SIG") + (name ? name : std::to_string(sig).c_str()) + " (" +
               strsignal(sig) + ")";
    }
    return "the scenario process exited with status " + std::to_string(WEXITSTATUS(status)) +
           " before it finished";
}

// A fresh folder that stands for "/" while one scenario plays; removed afterwards, also when
// the scenario process crashed.
class DeviceRoot {
public:
    DeviceRoot() {
        char tmpl[] = "/tmp/camext-device-XXXXXX";
        const char* p = mkdtemp(tmpl);
        mPath = p ? p : "";
    }
    ~DeviceRoot() {
        std::error_code ec;
        if (!mPath.empty()) std::filesystem::remove_all(mPath, ec);
    }
    const std::string& path() const { return mPath; }

private:
    std::string mPath;
};

int playFile(const Scenario& scenario, const RunOptions& baseOptions, Report* report,
             TraceWriter* trace) {
    DeviceRoot root;
    if (root.path().empty()) {
        report->crashed(scenario.file, "",
                        std::string("cannot make a device root: ") + strerror(errno));
        return 2;
    }
    RunOptions options = baseOptions;
    options.deviceRoot = root.path();
    int fds[2];
    if (pipe(fds) != 0) {
        report->crashed(scenario.file, "", std::string("cannot create a pipe: ") + strerror(errno));
        return 2;
    }
    fflush(nullptr);
    pid_t pid = fork();
    if (pid < 0) {
        report->crashed(scenario.file, "", std::string("cannot fork: ") + strerror(errno));
        close(fds[0]);
        close(fds[1]);
        return 2;
    }
    if (pid == 0) {
        close(fds[0]);
        // The report owns stdout; whatever the library prints goes to stderr.
        dup2(STDERR_FILENO, STDOUT_FILENO);
        const int code = playScenario(scenario, options, fds[1]);
        close(fds[1]);
        // The library's singletons live for the process, as in the camera server: no exit
        // handlers, no destructors.
        _exit(code);
    }
    close(fds[1]);

    Outcome outcome;
    std::string buffer;
    bool hung = false;
    char chunk[65536];
    for (;;) {
        struct pollfd p = {fds[0], POLLIN, 0};
        int ready = poll(&p, 1, kSilenceLimitMs);
        if (ready == 0) {
            hung = true;
            kill(pid, SIGKILL);
            break;
        }
        if (ready < 0) {
            if (errno == EINTR) continue;
            break;
        }
        ssize_t n = read(fds[0], chunk, sizeof(chunk));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        buffer.append(chunk, static_cast<size_t>(n));
        size_t start = 0, nl;
        while ((nl = buffer.find('\n', start)) != std::string::npos) {
            std::string error;
            Json r = Json::parse(buffer.substr(start, nl - start), &error);
            start = nl + 1;
            if (!error.empty() || !r.isObject()) continue;
            track(r, &outcome);
            if (trace) trace->record(r);
            report->record(scenario.file, r);
        }
        buffer.erase(0, start);
    }
    close(fds[0]);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }

    int result;
    const std::string step = outcome.open.empty() ? "" : outcome.open.back();
    if (hung) {
        report->crashed(scenario.file, step,
                        "no progress for " + std::to_string(kSilenceLimitMs / 1000) +
                            " s; the scenario process was stopped");
        result = 1;
    } else if (WIFEXITED(status) && outcome.ended && WEXITSTATUS(status) <= 2) {
        result = WEXITSTATUS(status);
    } else if (WIFEXITED(status) && WEXITSTATUS(status) == 2 && outcome.open.empty()) {
        result = 2;  // the device could not be set up; the process said why
    } else {
        report->crashed(scenario.file, step, describeStatus(status));
        result = 1;
    }
    report->fileDone(scenario.file, result, outcome.steps, outcome.failedSteps);
    return result;
}

}  // namespace

int runFiles(const std::vector<std::string>& files, const RunOptions& options, FILE* out) {
    Report report(out, options.json);
    std::unique_ptr<TraceWriter> trace;
    if (!options.tracePath.empty()) trace = std::make_unique<TraceWriter>();
    int worst = 0;
    for (const auto& file : files) {
        Scenario scenario;
        std::vector<ParseError> errors;
        int result;
        if (!loadScenario(file, tagChecker(), &scenario, &errors)) {
            report.malformed(file, errors);
            report.fileDone(file, 2, 0, 0);
            result = 2;
        } else {
            result = playFile(scenario, options, &report, trace.get());
        }
        worst = std::max(worst, result);
    }
    std::string error;
    if (trace && !trace->write(options.tracePath, &error)) {
        fprintf(stderr, "camext run: %s\n", error.c_str());
        worst = 2;
    }
    return worst;
}

}  // namespace sim
}  // namespace camext
