/*
 * What the transaction fuzzer's operations share: the extension object with its client state
 * open to the harness, and the server-side state of one input (the clients the harness opened,
 * each camera's result path, the binders handed out), which the next operation sees.
 */
#pragma once

#include <hostctl/Binder.h>
#include <hostctl/CameraHost.h>
#include <hostctl/HostCaptureOutputStates.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

#include <memory>
#include <string>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "TransactInput.h"

namespace transactfuzz {

// Reports the broken rule and the operation that broke it, then aborts (which libFuzzer reports).
[[noreturn]] void fail(const char* rule, const char* file, int line);
#define HARNESS_CHECK(cond)                                           \
    do {                                                              \
        if (!(cond)) ::transactfuzz::fail(#cond, __FILE__, __LINE__); \
    } while (0)

// The extension with its client state put back between inputs.
class FuzzExtension : public android::CameraServiceExtImpl {
public:
    void prepare(uint8_t world);
    bool disconnecting() const { return mDisconnectClients; }
    static void driverSignal(siginfo_t* info) { aon_signal_handler(info->si_signo, info, nullptr); }

private:
    android::sp<android::ZumioManager> mZumio;
    android::sp<android::MagnecticSensorManager> mTorch;
};

// The server's side of one camera.
struct CameraSide {
    android::sp<hostctl::HostCameraClient> client;  // the open client, null when none
    std::string package;                            // the bare package it connected with
    std::unique_ptr<hostctl::HostCaptureOutputStates> results;
    bool closing = false;
};

// The server-side state of one input.
struct World {
    uint8_t bits = 0;
    CameraSide cameras[kCameraChoices];
    std::vector<android::sp<hostctl::HostBinder>> binders;
    // Clients the library may still be disconnecting when their camera forgets them.
    std::vector<android::sp<hostctl::HostCameraClient>> retired;
    android::sp<hostctl::HostCameraService> service;
    uint32_t touched = 0;  // bit per camera choice an operation used
};

// Held for the process, so nothing the harness made is reported as leaked.
extern FuzzExtension* gExt;

// The camera id text of a camera choice.
std::string cameraIdText(uint8_t choice);
// A named binder of the input, made on first use.
android::sp<hostctl::HostBinder> namedBinder(World& world, size_t which);

// The server's close sequence for the client of `choice`, when it has one.
void closeClient(World& world, uint8_t choice);
// Plays one operation other than a transaction.
void playHookOp(World& world, Op op, Reader& in);
// Checks what must hold between any two operations.
void checkBetweenOps();
// Sets up what the hook operations need once (vendor tags, services).
void initHookOps();

}  // namespace transactfuzz
