// Writes the transaction fuzzer's seed corpus: one well-formed call per code, the refusals, and
// sequences that interleave transactions with the hooks of a camera session.
//   transact_seeds --write DIR
// The checked-in tests/fuzz/transact/corpus is this tool's output; rewrite it when the input
// format in TransactInput.h changes.

#include <string>
#include <utility>
#include <vector>

#include "TransactInput.h"
#include "common/SeedFiles.h"

namespace {

using namespace transactfuzz;

constexpr uint8_t kAll = 0xff;
// No client open, nothing granted, no manager: what a fresh server has.
constexpr uint8_t kBare = 0;
// Indexes into kPackages.
constexpr uint8_t kApp = 0, kWhatsApp = 1, kSystemCamera = 2, kCts = 3, kVerifier = 4, kTencent = 5,
                  kAndroid = 7, kDocScan = 8;

ParcelWriter token() {
    return ParcelWriter().token();
}

std::vector<std::pair<std::string, Writer>> seeds() {
    std::vector<std::pair<std::string, Writer>> s;
    auto add = [&s](const char* name, const Writer& w) { s.emplace_back(name, w); };

    // One call per code, with everything present.
    add("10001-add-auth-result",
        Writer(kAll).transact(
            10001, 1000, 2100,
            token().int32(10234).int32(7200).int32(3).string16("com.example.docscan")));
    add("10002-auth-death-binder", Writer(kAll).transact(10002, 1000, 2100, token().binder(0)));
    add("10003-set-package",
        Writer(kAll).transact(10003, 1000, 2100, token().string16("com.whatsapp")));
    add("10004-is-authed",
        Writer(kAll).transact(10004, 10234, 7200, token().string16("com.example.docscan")));
    add("10005-client-info",
        Writer(kAll).transact(10005, 1000, 2100,
                              token().string16("com.vantu.camera").int32(10050).int32(3100)));
    add("10006-call-info", Writer(kAll).transact(10006, 10050, 3100, token()));
    add("10007-torch-client", Writer(kAll).transact(10007, 1000, 1234, token()));
    add("10008-torch-intensity", Writer(kAll).transact(10008, 1000, 1234, token().int32(100)));
    add("10009-disconnect-all", Writer(kAll).transact(10009, 1047, 812, ParcelWriter()));
    add("10010-avatar-null", Writer(kAll).transact(10010, 1000, 2100, token().string16("NULL")));
    add("10010-avatar-init", Writer(kAll).transact(10010, 1000, 2100, token().string16("init")));
    add("10010-avatar-data",
        Writer(kAll).transact(10010, 1000, 2100, token().string16("{\"avatar\":1}")));
    add("10011-connect-status", Writer(kAll).transact(10011, 1047, 812, token()));
    add("10012-aon-open", Writer(kAll).transact(10012, 10300, 8100, token().binder(1)));
    add("10013-aon-close", Writer(kAll).transact(10013, 10300, 8100, token()));
    add("10014-pre-open", Writer(kAll).transact(10014, 1047, 812, token()));
    // Refusals: no permission, codes just outside the range, a null binder, a null string.
    add("refused-10009-without-permission",
        Writer(kAll & ~kGranted).transact(10009, 10100, 5000, ParcelWriter()));
    add("refused-10000", Writer(kAll).transact(10000, 1000, 2100, token()));
    add("refused-10015", Writer(kAll).transact(10015, 1000, 2100, token()));
    add("refused-null-binder", Writer(kAll).transact(10002, 1000, 2100, token().nullBinder()));
    add("refused-null-package", Writer(kAll).transact(10003, 1000, 2100, token().nullString16(), 1));

    // Sessions with transactions between their hooks.
    add("session-open-configure-request-result-close", Writer(kBare)
                                                           .connect(0, kWhatsApp)
                                                           .characteristics(0)
                                                           .configure(0, 0x13)
                                                           .request(0, 1, 1)
                                                           .result(0, 1, 2, 4)
                                                           .request(0, 2, 2)
                                                           .result(0, 2, 2, 2)
                                                           .disconnect(0));
    add("session-meta-stream-results", Writer(kBare)
                                           .connect(2, kApp)
                                           .configure(2, 0x11)
                                           .request(2, 1)
                                           .result(2, 1, 2, 2)
                                           .request(2, 2)
                                           .result(2, 2, 2, 2)
                                           .disconnect(2));
    add("disconnect-all-open-clients", Writer(kGranted)
                                           .connect(0, kWhatsApp)
                                           .connect(2, kApp)
                                           .transact(10009, 1047, 812)
                                           .transact(10011, 1047, 812, token()));
    add("connect-status-around-close", Writer(kGranted)
                                           .transact(10011, 1047, 812, token())
                                           .connect(1, kApp)
                                           .transact(10011, 1047, 812, token())
                                           .disconnect(1)
                                           .transact(10011, 1047, 812, token()));
    add("aon-open-signal-then-connect",
        Writer(kGranted)
            .transact(10005, 1000, 2100,
                      token().string16("com.vantu.camera").int32(10300).int32(8100))
            .transact(10012, 10300, 8100, token().binder(1))
            .signal(1, 7)
            .connect(1, kApp)
            .disconnect(1)
            .binderDeath(1)
            .transact(10013, 10300, 8100, token()));
    add("auth-result-then-sdk-session",
        Writer(kBare)
            .transact(10002, 1000, 2100, token().binder(0))
            .transact(10001, 1000, 2100,
                      token().int32(10008).int32(3008).int32(3).string16("com.example.docscan"))
            .connect(8, kDocScan)
            .configure(8, 0x01)
            .binderDeath(0)
            .time(1000)
            .configure(8, 0x01)
            .disconnect(8));
    add("torch-intensity-and-magnetic-sensor", Writer(kTorchManager)
                                                   .transact(10007, 1000, 1234, token())
                                                   .transact(10008, 1000, 1234, token().int32(80))
                                                   .connect(0, kWhatsApp)
                                                   .sensorEvent(1)
                                                   .request(0, 1, 0, 0, 2)
                                                   .torch(0, true)
                                                   .sensorEvent(0)
                                                   .disconnect(0)
                                                   .torch(0, false));
    add("avatar-session", Writer(kAvatarManager | kAvatarSwitch | kAps2Avatar)
                              .transact(10010, 1000, 2100, token().string16("init"))
                              .connect(1, kTencent)
                              .configure(1, 0x03)
                              .transact(10010, 1000, 2100, token().string16("{\"avatar\":2}"))
                              .request(1, 1)
                              .disconnect(1));
    add("eviction-by-system-camera", Writer(kBare)
                                         .connect(0, kWhatsApp)
                                         .transact(10014, 1047, 812, token())
                                         .evict(1, kSystemCamera)
                                         .connect(1, kSystemCamera)
                                         .time(500)
                                         .disconnect(1));
    add("eviction-by-android",
        Writer(kClient0 | kClient3).evict(0, kAndroid).connect(0, kAndroid).disconnect(0));
    add("cts-characteristics",
        Writer(kBare)
            .transact(10003, 1000, 2100, token().string16("android.camera.cts"))
            .characteristics(0)
            .connect(0, kCts)
            .characteristics(1)
            .transact(10003, 1000, 2100, token().string16("com.android.cts.verifier"))
            .characteristics(0)
            .torch(2, true)
            .disconnect(0));
    add("verifier-reconnects-same-camera", Writer(kBare)
                                               .connect(0, kVerifier)
                                               .connect(0, kApp)
                                               .disconnect(0)
                                               .connect(22, kApp)
                                               .connect(23, kApp));
    return s;
}

}  // namespace

int main(int argc, char** argv) {
    return fuzzworld::writeSeedFiles(
        argc, argv, seeds(), [](const auto& writer) -> const auto& { return writer.bytes(); });
}
