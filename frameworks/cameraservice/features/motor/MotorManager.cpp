#include "features/motor/MotorManager.h"

#include <cutils/properties.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "CameraServiceExtImpl.h"
#include "features/rio/MagneticSensorManger.h"
#include "utils/Env.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

std::atomic<bool> MotorManager::mIsOpenCameraUpMotor{false};
std::atomic<bool> MotorManager::mIsConfigureStreamCtrlMotor{false};

namespace {

constexpr char kMotorCtrlListPath[] = "/data/.camera/camera_hardware_motorctrl_applist";
constexpr char kRootName[] = "filter-conf";
// The lists are re-read at most once per 12 hours unless "camera.3rd.update" forces it.
constexpr int64_t kListReadPeriodSeconds = 43201;

int64_t monotonicSeconds() {
    return vantu::monotonicNs() / 1000000000LL;
}

}  // namespace

sp<MotorManager> MotorManager::getInstance(CameraServiceExtImpl* owner) {
    if (!getBool("feature_motor_enable", true, nullptr)) return nullptr;
    static std::mutex sLock;
    static sp<MotorManager> sInstance;  // lives for the process
    std::lock_guard<std::mutex> guard(sLock);
    if (sInstance == nullptr) {
        sInstance = new MotorManager(owner);
    } else if (owner != nullptr) {
        sInstance->mOwner.bind(owner);
    }
    return sInstance;
}

void MotorManager::sendSocketToMotorServer(int cmd, const char* packageName, int cameraId) {
    const char* package = packageName != nullptr ? packageName : "";
    const int pid = getCallingPid();
    const int size = snprintf(nullptr, 0, "%d,%d,%s,%d", cmd, pid, package, cameraId);
    if (size < 0) return;
    std::vector<char> text(static_cast<size_t>(size) + 1);
    snprintf(text.data(), text.size(), "%d,%d,%s,%d", cmd, pid, package, cameraId);
    char ctrl[1024] = {0};
    strncpy(ctrl, text.data(), sizeof(ctrl) - 1);
    const size_t length = strlen(ctrl);

    if (EXT_LOG_ON()) {
        EXT_LOG(1, "CAMERA_CONTROL_MOTOR ctrl camera by motor_socket E, ctrl_buffer(%s)", ctrl);
    }
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        EXT_LOG(0, "socket fail X");
        return;
    }
    const int val = fcntl(fd, F_GETFL, 0);
    const int val2 = val < 0 ? -1 : fcntl(fd, F_SETFL, val | O_NONBLOCK);
    if (val < 0 || val2 < 0) EXT_LOG(0, "get and set flag fail!! val: %d, val2: %d", val, val2);

    // Abstract namespace: family, one NUL byte, then the 12 characters of the name.
    static constexpr char kName[] = "motor_socket";
    sockaddr_un addr;
    memset(&addr, 0, sizeof(addr));
    addr.sun_family = AF_UNIX;
    memcpy(addr.sun_path + 1, kName, sizeof(kName) - 1);
    const socklen_t addrLength = offsetof(sockaddr_un, sun_path) + 1 + sizeof(kName) - 1;
    if (connect(fd, reinterpret_cast<sockaddr*>(&addr), addrLength) != 0) {
        close(fd);
        EXT_LOG(0, "socket connect fail X");
        return;
    }
    ssize_t err;
    do {
        // send() rather than write(): a motor service that hung up must not raise SIGPIPE in
        // the camera server.
        err = send(fd, ctrl, length, MSG_NOSIGNAL);
    } while (err < 0 && errno == EINTR);
    close(fd);
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "CAMERA_CONTROL_MOTOR ctrl camera by motor_socket X err:%d",
                static_cast<int>(err));
    }
}

void MotorManager::checkToReadRusFile() {
    const int32_t update = property_get_int32("camera.3rd.update", 0);
    const int64_t now = monotonicSeconds();
    const int64_t last = mLastReadTime.load(std::memory_order_relaxed);
    if (last != 0 && now - last < kListReadPeriodSeconds && update == 0) return;
    if (last == 0) mLastReadTime.store(now, std::memory_order_relaxed);

    const bool motorRead = parseMotorCtrlList();
    // Without the magnetic torch (feature switched off) its list is not read.
    bool rioRead = false;
    sp<MagnecticSensorManager> rio = MagnecticSensorManager::getInstance(mOwner.get());
    if (rio != nullptr) rioRead = rio->parseRIOWhiteAppList();
    if (motorRead || rioRead) mLastReadTime.store(now, std::memory_order_relaxed);
}

bool MotorManager::parseMotorCtrlList() {
    // A list that cannot be read leaves none: the configuration's lists apply until a good one
    // is downloaded.
    std::vector<CameraServiceRus::MotorCtrlEntry> entries;
    bool ok = false;
    const std::string path = vantu::devicePath(kMotorCtrlListPath);
    if (access(path.c_str(), R_OK) != 0) {
        if (EXT_LOG_ON()) EXT_LOG(1, "can not read rus file, maybe there no rus file\n");
    } else if (CameraServiceRus::Doc doc = CameraServiceRus::readFile(path.c_str())) {
        const xmlNode* root = xmlDocGetRootElement(doc.get());
        char version[CameraServiceRus::kValueSize];
        if (root == nullptr) {
            if (EXT_LOG_ON()) EXT_LOG(1, "xmlDocGetRootElement failed rootPtr NULL");
        } else if (!CameraServiceRus::nodeMatches(root, kRootName)) {
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "nodeName :%s not found Invalid node: %s", kRootName,
                        reinterpret_cast<const char*>(root->name));
            }
        } else {
            if (CameraServiceRus::getVersion(doc.get(), root, version)) {
                if (EXT_LOG_ON()) EXT_LOG(1, "version = %s", version);
            } else if (EXT_LOG_ON()) {
                EXT_LOG(1, "Tag %s not present in XML file", "version");
            }
            if (!CameraServiceRus::getMotorCtrlList(doc.get(), root, &entries)) {
                if (EXT_LOG_ON()) EXT_LOG(1, "failed get m_motorCtrlList is FALSE");
                entries.clear();
            } else if (entries.empty()) {
                if (EXT_LOG_ON()) EXT_LOG(1, "No package in PackageFilterList");
            } else {
                ok = true;
            }
        }
    } else if (EXT_LOG_ON()) {
        EXT_LOG(1, "xmlParseFile failed. please validate the xml: %s", path.c_str());
    }
    std::lock_guard<std::mutex> guard(mListLock);
    m_motorCtrlList.swap(entries);
    return ok;
}

std::vector<CameraServiceRus::MotorCtrlEntry> MotorManager::motorCtrlList() const {
    std::lock_guard<std::mutex> guard(mListLock);
    return m_motorCtrlList;
}

bool MotorManager::packageInCtrlList(const String8& packageName) const {
    std::lock_guard<std::mutex> guard(mListLock);
    for (const auto& entry : m_motorCtrlList) {
        if (strcmp(entry.name, packageName.string()) == 0) return true;
    }
    return false;
}

void MotorManager::updateIfCtrlMotorInConfigStream(const String8& packageName, int cameraId) {
    bool listEmpty;
    {
        std::lock_guard<std::mutex> guard(mListLock);
        listEmpty = m_motorCtrlList.empty();
    }
    const bool inConfigure = listEmpty
                                 ? stringArrayHas("up_motor_in_configure", packageName.string())
                                 : packageInCtrlList(packageName);
    mIsConfigureStreamCtrlMotor = inConfigure;
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "mIsConfigureStreamCtrlMotor=%d, upMotor=%d", inConfigure ? 1 : 0,
                mIsOpenCameraUpMotor ? 1 : 0);
    }
    if (!inConfigure && !mIsOpenCameraUpMotor) {
        sendSocketToMotorServer(CMD_UP, packageName.string(), cameraId);
        mIsOpenCameraUpMotor = true;
    }
}

void MotorManager::handleMotor(bool closing, int cmd, int /*reserved*/, const String8& cameraId,
                               const String8& packageName) {
    const int id = cameraIdToInt(cameraId);
    if (id != 1 || !mIsConfigureStreamCtrlMotor) return;
    if (!closing) {
        if (!mIsOpenCameraUpMotor) sendSocketToMotorServer(cmd, packageName.string(), id);
    } else if (mIsOpenCameraUpMotor) {
        if (EXT_LOG_ON()) EXT_LOG(1, "handleEvictionsLocked evicting ctrl motor.");
        String8 package = packageName;
        CameraServiceExtImpl* const owner = mOwner.get();
        if (strncmp(package.string(), "NULL", 4) == 0 && owner != nullptr) {
            package = owner->currentPackageName();
        }
        sendSocketToMotorServer(cmd, package.string(), id);
    }
    mIsOpenCameraUpMotor = !closing;
}

bool MotorManager::applyLimitMarkers(const char* entry, const String8& packageName, int cameraId,
                                     bool fromFile) {
    if (strncmp(entry, packageName.string(), packageName.length()) != 0) return false;
    bool applied = false;
    if (cameraId == 0 && strstr(entry, ".main.preview") != nullptr) {
        mMainPreviewLimited = true;
        applied = true;
    }
    if (cameraId == 1 && strstr(entry, ".sub.preview") != nullptr) {
        mSubPreviewLimited = true;
        applied = true;
    }
    if (cameraId == 1 && strstr(entry, ".sub.Texture") != nullptr) {
        mSubTextureLimited = true;
        applied = true;
    }
    if (strstr(entry, ".level1") != nullptr) {
        mLimitThirdAppSizeLevel = 1;
        applied = true;
        if (EXT_LOG_ON()) {
            if (fromFile) {
                EXT_LOG(1, "rus set mLimitThirdAppSizeLevel level1");
            } else {
                EXT_LOG(1, "set mLimitThirdAppSizeLevel level1");
            }
        }
    }
    return applied;
}

void MotorManager::checkIfLimitSize(const String8& packageName, int cameraId) {
    std::vector<CameraServiceRus::MotorCtrlEntry> list = motorCtrlList();
    if (!list.empty()) {
        int found = 0;
        for (const auto& entry : list) {
            if (applyLimitMarkers(entry.name, packageName, cameraId, true)) ++found;
        }
        if (EXT_LOG_ON()) EXT_LOG(1, "m_motorCtrlList Cam%d find_cnt=%d", cameraId, found);
        return;
    }
    std::vector<std::string> markers;
    getStringArray("limit_3rd_app_size", markers, nullptr);
    getStringArray("limit_3rd_app_size_byLevel", markers, nullptr);
    for (const auto& entry : markers)
        applyLimitMarkers(entry.c_str(), packageName, cameraId, false);
}

void MotorManager::resetThirdAppParameters() {
    mMainPreviewLimited = false;
    mSubTextureLimited = false;
    mLimitThirdAppSizeLevel = 0;
}

}  // namespace android
