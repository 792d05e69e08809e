#include "sim/LogSink.h"

#include <android/log.h>
#include <stdio.h>

#include <mutex>

namespace camext {
namespace sim {

namespace {

std::mutex gLock;
std::vector<LogLine> gLines;

// Debian's liblog (Android 10) hands a logger the line's attributes and its text apart.
void sinkLogger(const struct __android_logger_data* data, const char* message) {
    std::lock_guard<std::mutex> g(gLock);
    gLines.push_back({data ? data->priority : ANDROID_LOG_INFO, data && data->tag ? data->tag : "",
                      message ? message : ""});
}

char levelChar(int priority) {
    switch (priority) {
        case ANDROID_LOG_VERBOSE:
            return 'V';
        case ANDROID_LOG_DEBUG:
            return 'D';
        case ANDROID_LOG_INFO:
            return 'I';
        case ANDROID_LOG_WARN:
            return 'W';
        case ANDROID_LOG_ERROR:
            return 'E';
        case ANDROID_LOG_FATAL:
            return 'F';
        default:
            return 'I';
    }
}

}  // namespace

void LogSink::install() {
    __android_log_set_logger(sinkLogger);
    // Every line reaches the sink whatever liblog's own threshold says.
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
}

std::vector<LogLine> LogSink::take() {
    std::lock_guard<std::mutex> g(gLock);
    std::vector<LogLine> out;
    out.swap(gLines);
    return out;
}

std::string LogSink::brief(const LogLine& line, int pid) {
    std::string text = line.text;
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    char head[64];
    snprintf(head, sizeof(head), "%c/", levelChar(line.priority));
    char tail[32];
    snprintf(tail, sizeof(tail), "(%5d): ", pid);
    return head + line.tag + tail + text;
}

Json LogSink::toJson(const LogLine& line) {
    return Json::object({{"level", std::string(1, levelChar(line.priority))},
                         {"tag", line.tag},
                         {"text", line.text}});
}

}  // namespace sim
}  // namespace camext
