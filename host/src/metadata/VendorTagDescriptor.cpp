/*
 * The vendor tag descriptor: maps between vendor tag ids, their section and tag names and their
 * types, and its parcel form.
 */
#define LOG_TAG "VendorTagDescriptor"

#include <binder/Parcel.h>
#include <camera/VendorTagDescriptor.h>
#include <camera_metadata_hidden.h>
#include <inttypes.h>
#include <log/log.h>
#include <stdio.h>
#include <system/camera_metadata.h>

#include <algorithm>

namespace android {
namespace hardware {
namespace camera2 {
namespace params {

VendorTagDescriptor::~VendorTagDescriptor() {
    clearReverseMapping();
}

VendorTagDescriptor::VendorTagDescriptor() : mTagCount(0), mVendorOps() {}

VendorTagDescriptor::VendorTagDescriptor(const VendorTagDescriptor& src)
    : Parcelable(src), mTagCount(0), mVendorOps() {
    copyFrom(src);
}

VendorTagDescriptor& VendorTagDescriptor::operator=(const VendorTagDescriptor& rhs) {
    copyFrom(rhs);
    return *this;
}

void VendorTagDescriptor::copyFrom(const VendorTagDescriptor& src) {
    if (this == &src) return;
    clearReverseMapping();
    // The inner maps are owned per descriptor, so they are copied rather than shared.
    for (size_t i = 0; i < src.mReverseMapping.size(); ++i) {
        mReverseMapping.add(src.mReverseMapping.keyAt(i),
                            new KeyedVector<String8, uint32_t>(*src.mReverseMapping.valueAt(i)));
    }
    mTagToNameMap = src.mTagToNameMap;
    mTagToSectionMap = src.mTagToSectionMap;
    mTagToTypeMap = src.mTagToTypeMap;
    mSections = src.mSections;
    mTagCount = src.mTagCount;
    mVendorOps = src.mVendorOps;
}

void VendorTagDescriptor::clearReverseMapping() {
    for (size_t i = 0; i < mReverseMapping.size(); ++i) delete mReverseMapping.valueAt(i);
    mReverseMapping.clear();
}

void VendorTagDescriptor::addReverseMapping(const String8& section, const String8& name,
                                            uint32_t tag) {
    ssize_t index = mReverseMapping.indexOfKey(section);
    if (index < 0) {
        index = mReverseMapping.add(section, new KeyedVector<String8, uint32_t>());
    }
    mReverseMapping.editValueAt(index)->add(name, tag);
}

status_t VendorTagDescriptor::readFromParcel(const Parcel* parcel) {
    if (parcel == nullptr) {
        ALOGE("%s: parcel argument was NULL.", __FUNCTION__);
        return BAD_VALUE;
    }
    // Read into a scratch descriptor so that a malformed parcel leaves this one unchanged.
    VendorTagDescriptor read;
    status_t res = OK;
    int32_t tagCount = 0;
    if ((res = parcel->readInt32(&tagCount)) != OK) {
        ALOGE("%s: could not read tag count from parcel", __FUNCTION__);
        return res;
    }
    if (tagCount < 0) {
        ALOGE("%s: tag count %d from vendor ops is invalid.", __FUNCTION__, tagCount);
        return BAD_VALUE;
    }

    Vector<uint32_t> allTags;
    uint32_t maxSectionIndex = 0;
    for (int32_t i = 0; i < tagCount; ++i) {
        int32_t tagValue = 0;
        int32_t tagType = 0;
        int32_t sectionIndex = 0;
        if ((res = parcel->readInt32(&tagValue)) != OK) {
            ALOGE("%s: could not read tag id from parcel for index %d", __FUNCTION__, i);
            return res;
        }
        uint32_t tag = static_cast<uint32_t>(tagValue);
        if (tag < CAMERA_METADATA_VENDOR_TAG_BOUNDARY) {
            ALOGE("%s: vendor tag %d not in vendor tag section.", __FUNCTION__, tag);
            return BAD_VALUE;
        }
        if ((res = parcel->readInt32(&tagType)) != OK) {
            ALOGE("%s: could not read tag type from parcel for tag %d", __FUNCTION__, tag);
            return res;
        }
        if (tagType < 0 || tagType >= NUM_TYPES) {
            ALOGE("%s: tag type %d from vendor ops does not exist.", __FUNCTION__, tagType);
            return BAD_VALUE;
        }
        String8 tagName = parcel->readString8();
        if (tagName.isEmpty()) {
            ALOGE("%s: parcel tag name was NULL for tag %d.", __FUNCTION__, tag);
            return NOT_ENOUGH_DATA;
        }
        if ((res = parcel->readInt32(&sectionIndex)) != OK || sectionIndex < 0) {
            ALOGE("%s: could not read section index for tag %d.", __FUNCTION__, tag);
            return res != OK ? res : BAD_VALUE;
        }
        if (read.mTagToNameMap.indexOfKey(tag) >= 0) {
            ALOGE("%s: tag %d appears twice.", __FUNCTION__, tag);
            return BAD_VALUE;
        }
        maxSectionIndex = std::max(maxSectionIndex, static_cast<uint32_t>(sectionIndex));
        allTags.add(tag);
        read.mTagToNameMap.add(tag, tagName);
        read.mTagToSectionMap.add(tag, static_cast<uint32_t>(sectionIndex));
        read.mTagToTypeMap.add(tag, tagType);
    }

    if (tagCount > 0) {
        int32_t sectionCount = 0;
        if ((res = parcel->readInt32(&sectionCount)) != OK) {
            ALOGE("%s: could not read section count for.", __FUNCTION__);
            return res;
        }
        if (sectionCount < 0 || static_cast<uint32_t>(sectionCount) < maxSectionIndex + 1) {
            ALOGE("%s: Incorrect number of sections defined, received %d, needs %d.", __FUNCTION__,
                  sectionCount, maxSectionIndex + 1);
            return BAD_VALUE;
        }
        Vector<String8> inOrder;
        for (int32_t i = 0; i < sectionCount; ++i) {
            String8 sectionName = parcel->readString8();
            if (sectionName.isEmpty()) {
                ALOGE("%s: parcel section name was NULL for section %d.", __FUNCTION__, i);
                return NOT_ENOUGH_DATA;
            }
            read.mSections.add(sectionName);
            inOrder.add(sectionName);
        }
        // The tags refer to sections by position, so the names must arrive sorted and unique.
        for (size_t i = 0; i < inOrder.size(); ++i) {
            if (i >= read.mSections.size() || read.mSections[i] != inOrder[i]) {
                ALOGE("%s: section names are not sorted and unique.", __FUNCTION__);
                return BAD_VALUE;
            }
        }
    }
    read.mTagCount = tagCount;

    for (size_t i = 0; i < allTags.size(); ++i) {
        uint32_t tag = allTags[i];
        read.addReverseMapping(read.mSections[read.mTagToSectionMap.valueFor(tag)],
                               read.mTagToNameMap.valueFor(tag), tag);
    }
    copyFrom(read);
    return OK;
}

status_t VendorTagDescriptor::writeToParcel(Parcel* parcel) const {
    if (parcel == nullptr) {
        ALOGE("%s: parcel argument was NULL.", __FUNCTION__);
        return BAD_VALUE;
    }
    status_t res = OK;
    if ((res = parcel->writeInt32(mTagCount)) != OK) return res;

    for (size_t i = 0; i < mTagToNameMap.size(); ++i) {
        uint32_t tag = mTagToNameMap.keyAt(i);
        if ((res = parcel->writeInt32(static_cast<int32_t>(tag))) != OK) return res;
        if ((res = parcel->writeInt32(mTagToTypeMap.valueFor(tag))) != OK) return res;
        if ((res = parcel->writeString8(mTagToNameMap.valueAt(i))) != OK) return res;
        if ((res = parcel->writeInt32(static_cast<int32_t>(mTagToSectionMap.valueFor(tag)))) != OK) {
            return res;
        }
    }

    size_t numSections = mSections.size();
    if (numSections > 0) {
        if ((res = parcel->writeInt32(static_cast<int32_t>(numSections))) != OK) return res;
        for (size_t i = 0; i < numSections; ++i) {
            if ((res = parcel->writeString8(mSections[i])) != OK) return res;
        }
    }
    return res;
}

int VendorTagDescriptor::getTagCount() const {
    size_t size = mTagToNameMap.size();
    if (size == 0) return VENDOR_TAG_COUNT_ERR;
    return static_cast<int>(size);
}

void VendorTagDescriptor::getTagArray(uint32_t* tagArray) const {
    if (tagArray == nullptr) return;
    for (size_t i = 0; i < mTagToNameMap.size(); ++i) tagArray[i] = mTagToNameMap.keyAt(i);
}

const char* VendorTagDescriptor::getSectionName(uint32_t tag) const {
    ssize_t index = mTagToSectionMap.indexOfKey(tag);
    if (index < 0) return VENDOR_SECTION_NAME_ERR;
    uint32_t section = mTagToSectionMap.valueAt(index);
    if (section >= mSections.size()) return VENDOR_SECTION_NAME_ERR;
    return mSections[section].c_str();
}

ssize_t VendorTagDescriptor::getSectionIndex(uint32_t tag) const {
    ssize_t index = mTagToSectionMap.indexOfKey(tag);
    if (index < 0) return NAME_NOT_FOUND;
    return mTagToSectionMap.valueAt(index);
}

const char* VendorTagDescriptor::getTagName(uint32_t tag) const {
    ssize_t index = mTagToNameMap.indexOfKey(tag);
    if (index < 0) return VENDOR_TAG_NAME_ERR;
    return mTagToNameMap.valueAt(index).c_str();
}

int VendorTagDescriptor::getTagType(uint32_t tag) const {
    ssize_t index = mTagToTypeMap.indexOfKey(tag);
    if (index < 0) return VENDOR_TAG_TYPE_ERR;
    return mTagToTypeMap.valueAt(index);
}

const SortedVector<String8>* VendorTagDescriptor::getAllSectionNames() const {
    return &mSections;
}

status_t VendorTagDescriptor::lookupTag(const String8& name, const String8& section,
                                        uint32_t* tag) const {
    ssize_t index = mReverseMapping.indexOfKey(section);
    if (index < 0) {
        ALOGE("%s: Section '%s' does not exist.", __FUNCTION__, section.c_str());
        return BAD_VALUE;
    }
    ssize_t nameIndex = mReverseMapping[index]->indexOfKey(name);
    if (nameIndex < 0) {
        ALOGE("%s: Tag name '%s' does not exist.", __FUNCTION__, name.c_str());
        return BAD_VALUE;
    }
    if (tag != nullptr) *tag = mReverseMapping[index]->valueAt(nameIndex);
    return OK;
}

void VendorTagDescriptor::dump(int fd, int verbosity, int indentation) const {
    size_t size = mTagToNameMap.size();
    if (size == 0) {
        dprintf(fd, "%*sDumping configured vendor tag descriptors: None set\n", indentation, "");
        return;
    }
    dprintf(fd, "%*sDumping configured vendor tag descriptors: %zu entries\n", indentation, "",
            size);
    for (size_t i = 0; i < size; ++i) {
        uint32_t tag = mTagToNameMap.keyAt(i);
        if (verbosity < 1) {
            dprintf(fd, "%*s0x%x\n", indentation + 2, "", tag);
            continue;
        }
        const char* sectionName = getSectionName(tag);
        int type = getTagType(tag);
        const char* typeName =
            (type >= 0 && type < NUM_TYPES) ? camera_metadata_type_names[type] : "UNKNOWN";
        dprintf(fd, "%*s0x%x (%s) with type %d (%s) defined in section %s\n", indentation + 2, "",
                tag, mTagToNameMap.valueAt(i).c_str(), type, typeName,
                sectionName != nullptr ? sectionName : "UNKNOWN");
    }
}

}  // namespace params
}  // namespace camera2
}  // namespace hardware

status_t VendorTagDescriptor::createDescriptorFromOps(const vendor_tag_ops_t* vOps,
                                                      sp<VendorTagDescriptor>& descriptor) {
    if (vOps == nullptr || vOps->get_tag_count == nullptr || vOps->get_all_tags == nullptr ||
        vOps->get_tag_name == nullptr || vOps->get_section_name == nullptr ||
        vOps->get_tag_type == nullptr) {
        ALOGE("%s: vendor_tag_ops argument was NULL.", __FUNCTION__);
        return BAD_VALUE;
    }
    int tagCount = vOps->get_tag_count(vOps);
    if (tagCount < 0) {
        ALOGE("%s: tag count %d from vendor ops is invalid.", __FUNCTION__, tagCount);
        return BAD_VALUE;
    }

    Vector<uint32_t> tagArray;
    if (tagArray.resize(tagCount) != tagCount) {
        ALOGE("%s: too many (%u) vendor tags defined.", __FUNCTION__, tagCount);
        return NO_MEMORY;
    }
    vOps->get_all_tags(vOps, tagArray.editArray());

    sp<VendorTagDescriptor> desc = new VendorTagDescriptor();
    desc->mTagCount = tagCount;

    SortedVector<String8> sections;
    KeyedVector<uint32_t, String8> tagToSectionMap;
    for (size_t i = 0; i < static_cast<size_t>(tagCount); ++i) {
        uint32_t tag = tagArray[i];
        if (tag < CAMERA_METADATA_VENDOR_TAG_BOUNDARY) {
            ALOGE("%s: vendor tag %d not in vendor tag section.", __FUNCTION__, tag);
            return BAD_VALUE;
        }
        const char* tagName = vOps->get_tag_name(vOps, tag);
        if (tagName == nullptr) {
            ALOGE("%s: no tag name defined for vendor tag %d.", __FUNCTION__, tag);
            return BAD_VALUE;
        }
        desc->mTagToNameMap.add(tag, String8(tagName));
        const char* sectionName = vOps->get_section_name(vOps, tag);
        if (sectionName == nullptr) {
            ALOGE("%s: no section name defined for vendor tag %d.", __FUNCTION__, tag);
            return BAD_VALUE;
        }
        String8 sectionString(sectionName);
        sections.add(sectionString);
        tagToSectionMap.add(tag, sectionString);

        int tagType = vOps->get_tag_type(vOps, tag);
        if (tagType < 0 || tagType >= NUM_TYPES) {
            ALOGE("%s: tag type %d from vendor ops does not exist.", __FUNCTION__, tagType);
            return BAD_VALUE;
        }
        desc->mTagToTypeMap.add(tag, tagType);
    }
    desc->mSections = sections;

    for (size_t i = 0; i < static_cast<size_t>(tagCount); ++i) {
        uint32_t tag = tagArray[i];
        const String8& sectionString = tagToSectionMap.valueFor(tag);
        ssize_t index = sections.indexOf(sectionString);
        if (index < 0) return BAD_VALUE;
        desc->mTagToSectionMap.add(tag, static_cast<uint32_t>(index));
        desc->addReverseMapping(sectionString, desc->mTagToNameMap.valueFor(tag), tag);
    }

    descriptor = desc;
    return OK;
}

}  // namespace android
