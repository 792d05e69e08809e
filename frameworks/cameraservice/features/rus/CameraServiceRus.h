/*
 * The reader of the downloadable XML lists under "/data/.camera/" (the pop-up motor's app list
 * and the magnetic torch's app and ISO list). Both share one layout:
 *
 *   <filter-conf>
 *     <version>...</version>
 *     <PackageFilterList><PackageIndex>1</PackageIndex><PackageName>com.app</PackageName>
 *     </PackageFilterList> ...
 *     <IsoIntensityList><IsoValue>1000</IsoValue><LowLevel>40</LowLevel>
 *       <HighLevel>46</HighLevel></IsoIntensityList> ...
 *   </filter-conf>
 *
 * A node matches a requested name when the requested name begins with the node's name, as the
 * shipped lists have always been read. Each value is fetched as text into a 64-byte buffer, so a
 * longer text is cut to 63 characters.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_RUS_CAMERASERVICERUS_H
#define VANTU_CAMERASERVICE_FEATURES_RUS_CAMERASERVICERUS_H

#include <libxml/tree.h>
#include <stddef.h>
#include <stdint.h>
#include <utils/String8.h>

#include <memory>
#include <vector>

namespace android {

class CameraServiceRus {
public:
    static constexpr size_t kValueSize = 64;

    // One entry of the motor-control list: the index text, then the package name text.
    struct MotorCtrlEntry {
        char index[kValueSize];
        char name[kValueSize];
    };

    struct DocDeleter {
        void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
    };
    using Doc = std::unique_ptr<xmlDoc, DocDeleter>;

    // Parses `path` (already resolved against the device root). Nothing is fetched from the
    // network, no DTD is loaded and no entity is substituted, so a downloaded file can neither
    // reach out nor blow up; libxml2's default depth and size limits stay in force. Null when the
    // file is not well-formed XML.
    static Doc readFile(const char* path);

    // True when `name` begins with the node's name (compared over the node name's length).
    static bool nodeMatches(const xmlNode* node, const char* name);

    // The text of the first child element of `parent` that matches `name`, cut to fit `out`
    // (kValueSize bytes, always terminated). False when there is no such child.
    static bool fetchValue(xmlDoc* doc, const xmlNode* parent, const char* name,
                           char (&out)[kValueSize]);

    // The text of the root's "version" element; false when the root has none.
    static bool getVersion(xmlDoc* doc, const xmlNode* root, char (&out)[kValueSize]);

    // The "PackageName" of every "PackageFilterList" element, in document order. False (with
    // `names` holding those read so far) when an element lacks its index or name.
    static bool getPackageList(xmlDoc* doc, const xmlNode* root, std::vector<String8>* names);

    // The motor-control list: index and name of every "PackageFilterList" element. Reports
    // "failed evaluated PackageFilterList is FALSE" and answers false when one cannot be read.
    static bool getMotorCtrlList(xmlDoc* doc, const xmlNode* root,
                                 std::vector<MotorCtrlEntry>* entries);

    // The ISO table: IsoValue, LowLevel and HighLevel of every "IsoIntensityList" element,
    // converted with atoi, three integers per element. False when an element lacks one of them;
    // the values fetched before it stay in `map`.
    static bool getIsoIntensityList(xmlDoc* doc, const xmlNode* root, std::vector<int32_t>* map);
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_RUS_CAMERASERVICERUS_H
