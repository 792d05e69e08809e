/*
 * Host stand-in of the platform's vndk/hardware_buffer.h (libnativewindow, Android 13): the
 * bridge between gralloc buffer handles and AHardwareBuffer.
 */
#ifndef ANDROID_VNDK_NATIVEWINDOW_AHARDWAREBUFFER_H
#define ANDROID_VNDK_NATIVEWINDOW_AHARDWAREBUFFER_H

#include <android/hardware_buffer.h>
#include <cutils/native_handle.h>

__BEGIN_DECLS

// The buffer's native handle; owned by the buffer.
const native_handle_t* AHardwareBuffer_getNativeHandle(const AHardwareBuffer* buffer);

enum CreateFromHandleMethod {
    // The handle is registered with the buffer mapper; the caller keeps its own.
    AHARDWAREBUFFER_CREATE_FROM_HANDLE_METHOD_REGISTER = 2,
    // The handle is cloned first.
    AHARDWAREBUFFER_CREATE_FROM_HANDLE_METHOD_CLONE = 3,
};

// A new reference to the buffer behind `handle`, described by `desc`; release it with
// AHardwareBuffer_release. 0, or -EINVAL for a handle the mapper does not know.
int AHardwareBuffer_createFromHandle(const AHardwareBuffer_Desc* desc, const native_handle_t* handle,
                                     int32_t method, AHardwareBuffer** outBuffer);

__END_DECLS

#endif  // ANDROID_VNDK_NATIVEWINDOW_AHARDWAREBUFFER_H
