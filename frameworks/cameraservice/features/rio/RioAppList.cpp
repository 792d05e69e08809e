/*
 * The downloadable list of the magnetic torch: the apps that may use the accessory and the ISO
 * table of its brightness, taken only when "/data/.camera/updateInfo" says the download belongs
 * to this build.
 */
#include <cutils/properties.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "features/rio/MagneticSensorManger.h"
#include "features/rus/CameraServiceRus.h"
#include "utils/Env.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

constexpr char kRioListPath[] = "/data/.camera/camera_hardware_rio_applist";
constexpr char kUpdateInfoPath[] = "/data/.camera/updateInfo";
constexpr char kRootName[] = "filter-conf";

}  // namespace

bool MagnecticSensorManager::isNeedUpdateRIOWhiteList() {
    char buildDate[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.build.date.utc", buildDate, "");
    const std::string path = vantu::devicePath(kUpdateInfoPath);
    if (access(path.c_str(), R_OK) != 0) {
        if (EXT_LOG_ON()) {
            EXT_LOG(1, "[RIO-Torch] can not read %s, maybe there no %s\n", kUpdateInfoPath,
                    kUpdateInfoPath);
        }
        return false;
    }
    FILE* file = fopen(path.c_str(), "re");
    if (file == nullptr) {
        if (EXT_LOG_ON()) EXT_LOG(1, "[RIO-Torch] Error opening  %s\n", kUpdateInfoPath);
        return false;
    }
    // The first line: "version:<text>,md5:<32 hex digits>,state:<digit>" and a newline; the
    // layout beyond the order of the markers is this file's own.
    char line[128] = {0};
    const bool read = fgets(line, sizeof(line), file) != nullptr;
    fclose(file);
    if (!read) line[0] = '\0';

    const char* version = strstr(line, "version:");
    if (version == nullptr) {
        if (EXT_LOG_ON()) EXT_LOG(1, "[RIO-Torch] can not find version");
        return false;
    }
    const char* md5 = strstr(version, "md5:");
    if (md5 == nullptr) {
        if (EXT_LOG_ON()) EXT_LOG(1, "[RIO-Torch] can not find md5");
        return false;
    }
    // The line ends in a newline; without one the state field is incomplete (a download cut
    // short, or a line longer than the buffer).
    const char* state = strstr(md5, "state:");
    if (state == nullptr || strchr(state, '\n') == nullptr) {
        if (EXT_LOG_ON()) EXT_LOG(1, "[RIO-Torch] can not find state");
        return false;
    }
    // The version text runs from after "version:" to the next comma.
    const char* text = version + strlen("version:");
    const size_t length = strcspn(text, ",\r\n");
    return length == strlen(buildDate) && strncmp(text, buildDate, length) == 0;
}

bool MagnecticSensorManager::parseRIOWhiteAppList() {
    if (!isNeedUpdateRIOWhiteList()) {
        std::lock_guard<std::mutex> guard(mInfoLock);
        mWhiteList.clear();
        mIsoIntensityMap.clear();
        return false;
    }
    const std::string path = vantu::devicePath(kRioListPath);
    if (access(path.c_str(), R_OK) != 0) {
        if (EXT_LOG_ON()) EXT_LOG(1, "[RIO-Torch]can not read rus file, maybe there no rus file\n");
        return false;
    }
    CameraServiceRus::Doc doc = CameraServiceRus::readFile(path.c_str());
    if (doc == nullptr) {
        EXT_LOG(0, "[RIO-Torch] xmlParseFile failed. please validate the xml: %s", path.c_str());
        return false;
    }
    const xmlNode* root = xmlDocGetRootElement(doc.get());
    if (root == nullptr) {
        EXT_LOG(0, "[RIO-Torch] xmlDocGetRootElement failed rootPtr NULL");
        return false;
    }
    if (!CameraServiceRus::nodeMatches(root, kRootName)) {
        EXT_LOG(0, "[RIO-Torch] nodeName :%s not found Invalid node: %s", kRootName,
                reinterpret_cast<const char*>(root->name));
        return false;
    }
    char version[CameraServiceRus::kValueSize];
    if (CameraServiceRus::getVersion(doc.get(), root, version)) {
        if (EXT_LOG_ON()) EXT_LOG(1, "[RIO-Torch] version = %s", version);
    } else if (EXT_LOG_ON()) {
        EXT_LOG(1, "[RIO-Torch] Tag %s not present in XML file", "version");
    }

    std::vector<String8> names;
    const bool namesRead = CameraServiceRus::getPackageList(doc.get(), root, &names);
    {
        std::lock_guard<std::mutex> guard(mInfoLock);
        mWhiteList.swap(names);
    }
    if (!namesRead) {
        EXT_LOG(0, "[RIO-Torch] failed evaluated PackageFilterList is false");
        return false;
    }
    std::vector<int32_t> isoMap;
    const bool isoRead = CameraServiceRus::getIsoIntensityList(doc.get(), root, &isoMap);
    {
        std::lock_guard<std::mutex> guard(mInfoLock);
        mIsoIntensityMap.swap(isoMap);
    }
    if (!isoRead) {
        if (EXT_LOG_ON()) EXT_LOG(1, "[RIO-Torch] failed evaluated IsoIntensity is false");
        return false;
    }
    return true;
}

}  // namespace android
