/*
 * The factory through which the camera server obtains the extension object.
 *
 * At start-up the server opens the extension library, looks up the C symbol "getExtFactoryImpl",
 * calls it once and keeps the returned factory; it then calls getCameraServiceExt() and keeps the
 * ICameraServiceExt it returns for the life of the process. Both the factory and the extension
 * object are created on first use and never destroyed.
 */
#ifndef VANTU_CONTRACT_CAMERASERVICEEXTFACTORY_H
#define VANTU_CONTRACT_CAMERASERVICEEXTFACTORY_H

#include "ICameraServiceExt.h"

namespace android {

class CameraServiceExtFactory {
public:
    // Slot 0. Builds the extension object on the first call; later calls return the same one.
    virtual ICameraServiceExt* getCameraServiceExt() = 0;
    // Slots 1, 2. The server never deletes the factory.
    virtual ~CameraServiceExtFactory() {}

    // The factory the server obtained from getExtFactoryImpl(), for code that runs inside the
    // extension (a transaction that reaches the extension object through the factory). The
    // library's getExtFactoryImpl() registers its factory here when it creates it, so this is
    // null only before the entry was first called.
    static CameraServiceExtFactory* getInstance();
};

// The library's one exported entry, as the server looks it up by name.
constexpr char kExtFactoryEntryName[] = "getExtFactoryImpl";
using GetExtFactoryImplFn = CameraServiceExtFactory* (*)();

}  // namespace android

#endif  // VANTU_CONTRACT_CAMERASERVICEEXTFACTORY_H
