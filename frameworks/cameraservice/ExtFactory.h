/*
 * The library's entry and the factory that builds the extension object for the running chip.
 */
#ifndef VANTU_CAMERASERVICE_EXTFACTORY_H
#define VANTU_CAMERASERVICE_EXTFACTORY_H

#include <stddef.h>

#include "CameraServiceExtFactory.h"

namespace android {

class CameraServiceExtImpl;

class ExtFactory : public CameraServiceExtFactory {
public:
    // Builds the extension object on the first call, choosing its class from "ro.board.platform"
    // (then "ro.hardware"); later calls return the same object without reading or logging.
    ICameraServiceExt* getCameraServiceExt() override;
    ~ExtFactory() override;
};

// One row of the board table: the exact "ro.board.platform" value, the chip class built for it.
struct BoardEntry {
    const char* platform;
    const char* className;
    CameraServiceExtImpl* (*create)();
};

// The board table, in the order it is searched.
const BoardEntry* boardTable();
size_t boardTableSize();

}  // namespace android

// The library's only exported symbol: the process-wide factory, made on the first call.
extern "C" __attribute__((visibility("default"))) android::ExtFactory* getExtFactoryImpl();

#endif  // VANTU_CAMERASERVICE_EXTFACTORY_H
