#include "features/rus/CameraServiceRus.h"

#include <libxml/parser.h>
#include <libxml/xmlstring.h>
#include <stdlib.h>
#include <string.h>

#include "utils/VantuLog.h"

namespace android {

namespace {

const xmlChar* X(const char* s) {
    return reinterpret_cast<const xmlChar*>(s);
}

// The next element among `node` and its following siblings that matches `name`.
const xmlNode* findElement(const xmlNode* node, const char* name) {
    for (; node != nullptr; node = xmlNextElementSibling(const_cast<xmlNode*>(node))) {
        if (node->type == XML_ELEMENT_NODE && CameraServiceRus::nodeMatches(node, name)) {
            return node;
        }
    }
    return nullptr;
}

const xmlNode* firstChildElement(const xmlNode* parent) {
    return parent == nullptr ? nullptr : xmlFirstElementChild(const_cast<xmlNode*>(parent));
}

const xmlNode* nextElement(const xmlNode* node) {
    return xmlNextElementSibling(const_cast<xmlNode*>(node));
}

}  // namespace

CameraServiceRus::Doc CameraServiceRus::readFile(const char* path) {
    // xmlReadFile is xmlParseFile with options: no XML_PARSE_NOENT (entities stay references),
    // no XML_PARSE_DTDLOAD, no XML_PARSE_HUGE, and libxml2's own error printing kept quiet.
    const int options = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    return Doc(xmlReadFile(path, nullptr, options));
}

bool CameraServiceRus::nodeMatches(const xmlNode* node, const char* name) {
    if (node == nullptr || node->name == nullptr || name == nullptr) return false;
    return xmlStrncmp(X(name), node->name, xmlStrlen(node->name)) == 0;
}

bool CameraServiceRus::fetchValue(xmlDoc* doc, const xmlNode* parent, const char* name,
                                  char (&out)[kValueSize]) {
    out[0] = '\0';
    const xmlNode* node = findElement(firstChildElement(parent), name);
    if (node == nullptr) return false;
    // inLine 0: an entity reference is returned as written, never expanded.
    xmlChar* text = xmlNodeListGetString(doc, node->children, 0);
    if (text != nullptr) {
        strncpy(out, reinterpret_cast<const char*>(text), kValueSize - 1);
        out[kValueSize - 1] = '\0';
        xmlFree(text);
    }
    return true;
}

bool CameraServiceRus::getVersion(xmlDoc* doc, const xmlNode* root, char (&out)[kValueSize]) {
    return fetchValue(doc, root, "version", out);
}

bool CameraServiceRus::getPackageList(xmlDoc* doc, const xmlNode* root,
                                      std::vector<String8>* names) {
    char index[kValueSize];
    char name[kValueSize];
    for (const xmlNode* node = findElement(firstChildElement(root), "PackageFilterList");
         node != nullptr; node = findElement(nextElement(node), "PackageFilterList")) {
        if (!fetchValue(doc, node, "PackageIndex", index) ||
            !fetchValue(doc, node, "PackageName", name)) {
            return false;
        }
        names->push_back(String8(name));
    }
    return true;
}

bool CameraServiceRus::getMotorCtrlList(xmlDoc* doc, const xmlNode* root,
                                        std::vector<MotorCtrlEntry>* entries) {
    for (const xmlNode* node = findElement(firstChildElement(root), "PackageFilterList");
         node != nullptr; node = findElement(nextElement(node), "PackageFilterList")) {
        MotorCtrlEntry entry;
        if (!fetchValue(doc, node, "PackageIndex", entry.index) ||
            !fetchValue(doc, node, "PackageName", entry.name)) {
            if (EXT_LOG_ON()) EXT_LOG(1, "failed evaluated PackageFilterList is FALSE");
            return false;
        }
        entries->push_back(entry);
    }
    return true;
}

bool CameraServiceRus::getIsoIntensityList(xmlDoc* doc, const xmlNode* root,
                                           std::vector<int32_t>* map) {
    static constexpr const char* kColumns[] = {"IsoValue", "LowLevel", "HighLevel"};
    char value[kValueSize];
    for (const xmlNode* node = findElement(firstChildElement(root), "IsoIntensityList");
         node != nullptr; node = findElement(nextElement(node), "IsoIntensityList")) {
        // Values are appended as they are fetched, so a row cut short leaves a table that is
        // not whole rows, which the torch does not use.
        for (const char* column : kColumns) {
            if (!fetchValue(doc, node, column, value)) return false;
            map->push_back(atoi(value));
        }
    }
    return true;
}

}  // namespace android
