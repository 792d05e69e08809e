/*
 * The entry points of the frame-processing library "odm/lib64/libAlgoProcess.so" as the host's
 * fake exports them: C symbols with these names and argument kinds. The library's own
 * declarations must have the same arguments in the same order.
 *
 * The records whose layout belongs to the engine interface (frame description, stream buffer,
 * stream configuration, output, the key/value output lists) are opaque here: the fake neither
 * reads nor writes them, so it matches whatever element type the lists have.
 */
#ifndef HOST_FAKES_ALGOPROCESSAPI_H
#define HOST_FAKES_ALGOPROCESSAPI_H

#include <stdint.h>

struct AHardwareBuffer;

extern "C" {

// How the engine hands processed data back: `cookie` is the one given to createAPSInstance.
typedef void (*APSDataCallback)(void* cookie, void* data);

// Creates the engine instance; false (and a null instance) when the engine fails.
bool createAPSInstance(APSDataCallback callback, void* cookie, void** outInstance);
// Releases the instance made by createAPSInstance.
bool destoryAPSInstance(void* outParams);
// Sets the engine up for a stream configuration.
bool initAPS(void* instance, const void* streamConfig, void* outParams);
bool uninitAPS(void* outParams);
// Hands one preview frame (count 1) to the engine.
bool addPreviewFrameToAPS(const void* frame, const void* streamBuffer, int32_t count,
                          AHardwareBuffer* buffer, int32_t fwkBeauty, void* instance, void* output,
                          void* outParams);
// The same for still-capture frames.
bool APSProcessCaptureFrames(const void* frame, const void* streamBuffer, int32_t count,
                             AHardwareBuffer* buffer, int32_t fwkBeauty, void* instance,
                             void* output, void* outParams);
// Copies the pixels of `src` into `dst` (same size and format); false otherwise.
bool hardwarewbufferMemcpy(AHardwareBuffer* dst, AHardwareBuffer* src);
// Whether the engine supports the feature ("com.vantu.fwkBeauty", "com.vantu.fwkZumio").
bool isAPSFeatureSupport(const char* feature, void* outParams);

}  // extern "C"

#endif  // HOST_FAKES_ALGOPROCESSAPI_H
