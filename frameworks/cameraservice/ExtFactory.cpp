/*
 * The library's entry: the factory, the board table and the one place where the chip class of
 * the extension object is chosen.
 */
#include "ExtFactory.h"

#include <cutils/properties.h>
#include <string.h>

#include <atomic>

#include "CameraServiceExtImpl.h"
#include "platform/CameraServiceExtImpl_mt6765.h"
#include "platform/CameraServiceExtImpl_mt6779.h"
#include "platform/CameraServiceExtImpl_mt6785.h"
#include "platform/CameraServiceExtImpl_mt6789.h"
#include "platform/CameraServiceExtImpl_mt6833.h"
#include "platform/CameraServiceExtImpl_mt6853.h"
#include "platform/CameraServiceExtImpl_mt6873.h"
#include "platform/CameraServiceExtImpl_mt6877.h"
#include "platform/CameraServiceExtImpl_mt6885.h"
#include "platform/CameraServiceExtImpl_mt6893.h"
#include "platform/CameraServiceExtImpl_mt6895.h"
#include "platform/CameraServiceExtImpl_mt6983.h"
#include "platform/CameraServiceExtImpl_mt6985.h"
#include "platform/CameraServiceExtImpl_mtk.h"
#include "platform/CameraServiceExtImpl_qcom.h"
#include "platform/CameraServiceExtImpl_sm4350.h"
#include "platform/CameraServiceExtImpl_sm6125.h"
#include "platform/CameraServiceExtImpl_sm6225.h"
#include "platform/CameraServiceExtImpl_sm7125.h"
#include "platform/CameraServiceExtImpl_sm7250.h"
#include "platform/CameraServiceExtImpl_sm8150.h"
#include "platform/CameraServiceExtImpl_sm8250.h"
#include "platform/CameraServiceExtImpl_sm8350.h"
#include "platform/CameraServiceExtImpl_sm8450.h"
#include "platform/CameraServiceExtImpl_sm8550.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

template <typename Chip>
CameraServiceExtImpl* create() {
    return new Chip();
}

const BoardEntry kBoardTable[] = {
    {"mt6779", "CameraServiceExtImpl_mt6779", create<CameraServiceExtImpl_mt6779>},
    {"mt6765", "CameraServiceExtImpl_mt6765", create<CameraServiceExtImpl_mt6765>},
    {"mt6785", "CameraServiceExtImpl_mt6785", create<CameraServiceExtImpl_mt6785>},
    {"mt6789", "CameraServiceExtImpl_mt6789", create<CameraServiceExtImpl_mt6789>},
    {"mt6885", "CameraServiceExtImpl_mt6885", create<CameraServiceExtImpl_mt6885>},
    {"mt6833", "CameraServiceExtImpl_mt6833", create<CameraServiceExtImpl_mt6833>},
    {"mt6853", "CameraServiceExtImpl_mt6853", create<CameraServiceExtImpl_mt6853>},
    {"mt6873", "CameraServiceExtImpl_mt6873", create<CameraServiceExtImpl_mt6873>},
    {"mt6893", "CameraServiceExtImpl_mt6893", create<CameraServiceExtImpl_mt6893>},
    {"mt6895", "CameraServiceExtImpl_mt6895", create<CameraServiceExtImpl_mt6895>},
    {"mt6877", "CameraServiceExtImpl_mt6877", create<CameraServiceExtImpl_mt6877>},
    {"mt6983", "CameraServiceExtImpl_mt6983", create<CameraServiceExtImpl_mt6983>},
    {"mt6985", "CameraServiceExtImpl_mt6985", create<CameraServiceExtImpl_mt6985>},
    {"trinket", "CameraServiceExtImpl_sm6125", create<CameraServiceExtImpl_sm6125>},
    {"lahaina", "CameraServiceExtImpl_sm8350", create<CameraServiceExtImpl_sm8350>},
    {"kona", "CameraServiceExtImpl_sm8250", create<CameraServiceExtImpl_sm8250>},
    {"holi", "CameraServiceExtImpl_sm4350", create<CameraServiceExtImpl_sm4350>},
    {"lito", "CameraServiceExtImpl_sm7250", create<CameraServiceExtImpl_sm7250>},
    {"atoll", "CameraServiceExtImpl_sm7125", create<CameraServiceExtImpl_sm7125>},
    {"taro", "CameraServiceExtImpl_sm8450", create<CameraServiceExtImpl_sm8450>},
    {"bengal", "CameraServiceExtImpl_sm6225", create<CameraServiceExtImpl_sm6225>},
    {"msmnile", "CameraServiceExtImpl_sm8150", create<CameraServiceExtImpl_sm8150>},
    {"kalama", "CameraServiceExtImpl_sm8550", create<CameraServiceExtImpl_sm8550>},
};

// Set once by getExtFactoryImpl(), never freed.
std::atomic<ExtFactory*> gFactory{nullptr};

CameraServiceExtImpl* buildForPlatform() {
    char platform[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.board.platform", platform, "");
    initLogSwitch();
    if (getLogLevel() != 0) {
        UTIL_LOG(1, "%s ro.board.platform = %s", "getCameraServiceExt", platform);
    }

    for (const BoardEntry& entry : kBoardTable) {
        if (strcmp(platform, entry.platform) == 0) return entry.create();
    }

    char hardware[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.hardware", hardware, "");
    UTIL_LOG(0, "%s ro.hardware = %s", "getCameraServiceExt", hardware);
    // An unknown board that is not "qcom" gets the MediaTek family's behaviour on purpose.
    if (strcmp(hardware, "qcom") == 0) return new CameraServiceExtImpl_qcom();
    return new CameraServiceExtImpl_mtk();
}

}  // namespace

ICameraServiceExt* ExtFactory::getCameraServiceExt() {
    // Built once for the process; the strong reference taken here is never released, so the
    // server's own references can never free the object.
    static CameraServiceExtImpl* const sExtension = [] {
        CameraServiceExtImpl* extension = buildForPlatform();
        extension->incStrong(&gFactory);
        return extension;
    }();
    return sExtension;
}

ExtFactory::~ExtFactory() = default;

const BoardEntry* boardTable() {
    return kBoardTable;
}

size_t boardTableSize() {
    return sizeof(kBoardTable) / sizeof(kBoardTable[0]);
}

CameraServiceExtFactory* CameraServiceExtFactory::getInstance() {
    return gFactory.load(std::memory_order_acquire);
}

}  // namespace android

android::ExtFactory* getExtFactoryImpl() {
    static android::ExtFactory* const sFactory = [] {
        auto* factory = new android::ExtFactory();
        android::gFactory.store(factory, std::memory_order_release);
        return factory;
    }();
    return sFactory;
}
