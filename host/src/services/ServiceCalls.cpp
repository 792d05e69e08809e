// The ordered record of calls the host services received.
#include <mutex>

#include "hostctl/Services.h"

namespace hostctl {

namespace {

struct Calls {
    std::mutex lock;
    std::vector<ServiceCall> calls;
};

Calls& calls() {
    static Calls* c = new Calls();  // lives for the process
    return *c;
}

}  // namespace

std::string ServiceCall::text() const {
    std::string out = method + "(";
    for (size_t i = 0; i < args.size(); ++i) {
        if (i) out += ", ";
        out += args[i];
    }
    return out + ")";
}

void recordServiceCall(const std::string& service, const std::string& method,
                       std::vector<std::string> args) {
    std::lock_guard<std::mutex> g(calls().lock);
    calls().calls.push_back({service, method, std::move(args)});
}

std::vector<ServiceCall> serviceCalls(size_t from) {
    std::lock_guard<std::mutex> g(calls().lock);
    if (from >= calls().calls.size()) return {};
    return std::vector<ServiceCall>(calls().calls.begin() + from, calls().calls.end());
}

std::vector<ServiceCall> serviceCallsOf(const std::string& service) {
    std::vector<ServiceCall> out;
    std::lock_guard<std::mutex> g(calls().lock);
    for (const auto& c : calls().calls) {
        if (c.service == service) out.push_back(c);
    }
    return out;
}

size_t serviceCallCount() {
    std::lock_guard<std::mutex> g(calls().lock);
    return calls().calls.size();
}

void clearServiceCalls() {
    std::lock_guard<std::mutex> g(calls().lock);
    calls().calls.clear();
}

}  // namespace hostctl
