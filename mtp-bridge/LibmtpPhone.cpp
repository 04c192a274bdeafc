#include "LibmtpPhone.h"

#include "DeviceHolders.h"

#include <libmtp.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {
const char* const goneText = "This item is no longer on the phone. Click Refresh.";

// Android lists every object of a storage for parent 0; the root of a storage is always 0xFFFFFFFF.
uint32_t folderHandle(uint32_t parent) {
    return parent == 0 ? rootHandle : parent;
}

int progressThunk(uint64_t const sent, uint64_t const total, void const* const data) {
    const auto* progress = static_cast<const TransferProgress*>(data);
    return !*progress || (*progress)(sent, total) ? 0 : 1;
}

std::string lastComponent(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// A media type helps the phone file pictures and music where its own apps look for them.
LIBMTP_filetype_t typeFor(const std::string& name) {
    static const struct {
        const char* extension;
        LIBMTP_filetype_t type;
    } types[] = {
        {"jpg", LIBMTP_FILETYPE_JPEG},  {"jpeg", LIBMTP_FILETYPE_JPEG}, {"png", LIBMTP_FILETYPE_PNG},
        {"gif", LIBMTP_FILETYPE_GIF},   {"bmp", LIBMTP_FILETYPE_BMP},   {"tif", LIBMTP_FILETYPE_TIFF},
        {"mp3", LIBMTP_FILETYPE_MP3},   {"wav", LIBMTP_FILETYPE_WAV},   {"ogg", LIBMTP_FILETYPE_OGG},
        {"flac", LIBMTP_FILETYPE_FLAC}, {"aac", LIBMTP_FILETYPE_AAC},   {"m4a", LIBMTP_FILETYPE_M4A},
        {"mp4", LIBMTP_FILETYPE_MP4},   {"m4v", LIBMTP_FILETYPE_MP4},   {"avi", LIBMTP_FILETYPE_AVI},
        {"mov", LIBMTP_FILETYPE_QT},    {"mpg", LIBMTP_FILETYPE_MPEG},  {"txt", LIBMTP_FILETYPE_TEXT},
        {"html", LIBMTP_FILETYPE_HTML}, {"xml", LIBMTP_FILETYPE_XML}};
    const size_t dot = name.rfind('.');
    if (dot == std::string::npos) return LIBMTP_FILETYPE_UNKNOWN;
    std::string extension = name.substr(dot + 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    for (const auto& t : types)
        if (extension == t.extension) return t.type;
    return LIBMTP_FILETYPE_UNKNOWN;
}

std::string storageLabel(const LIBMTP_devicestorage_t* storage) {
    if (storage->StorageDescription && *storage->StorageDescription) return storage->StorageDescription;
    if (storage->VolumeIdentifier && *storage->VolumeIdentifier) return storage->VolumeIdentifier;
    return "Storage " + std::to_string(storage->id);
}

PhoneObject objectOf(const LIBMTP_file_t* file) {
    PhoneObject object;
    object.id = file->item_id;
    object.storage = file->storage_id;
    object.name = file->filename ? file->filename : "";
    object.folder = file->filetype == LIBMTP_FILETYPE_FOLDER;
    object.size = object.folder ? 0 : file->filesize;
    if (file->modificationdate > 0) object.modified = double(file->modificationdate);
    return object;
}

// Takes over a libmtp file list and frees it as it goes.
std::vector<PhoneObject> takeList(LIBMTP_file_t* files) {
    std::vector<PhoneObject> objects;
    while (files) {
        LIBMTP_file_t* next = files->next;
        objects.push_back(objectOf(files));
        LIBMTP_destroy_file_t(files);
        files = next;
    }
    return objects;
}

// Makers of Android phones by USB vendor number: one of them on the bus without an MTP interface
// is a phone set to charge only (or to another USB mode), not a missing phone.
bool androidOnUsb() {
    static const char* const makers[] = {"18d1", "04e8", "22b8", "1004", "0bb4", "0fce", "2717", "2a70",
                                         "12d1", "22d9", "2e04", "0b05", "17ef", "19d2", "1949", "2d95"};
    std::unique_ptr<DIR, int (*)(DIR*)> devices(::opendir("/sys/bus/usb/devices"), &::closedir);
    while (const dirent* d = devices ? ::readdir(devices.get()) : nullptr) {
        std::ifstream vendor(std::string("/sys/bus/usb/devices/") + d->d_name + "/idVendor");
        std::string id;
        if (std::getline(vendor, id) &&
            std::any_of(std::begin(makers), std::end(makers), [&](const char* m) { return id == m; }))
            return true;
    }
    return false;
}

std::string deviceNode(const LIBMTP_raw_device_t& raw) {
    char node[64];
    std::snprintf(node, sizeof node, "/dev/bus/usb/%03u/%03u", unsigned(raw.bus_location),
                  unsigned(raw.devnum));
    return node;
}

bool validName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}
} // namespace

LibmtpPhone::LibmtpPhone() {
    LIBMTP_Init();
}

LibmtpPhone::~LibmtpPhone() {
    close();
}

std::string LibmtpPhone::open() {
    if (device) return {};
    LIBMTP_raw_device_t* raw = nullptr;
    int count = 0;
    const LIBMTP_error_number_t status = LIBMTP_Detect_Raw_Devices(&raw, &count);
    std::unique_ptr<LIBMTP_raw_device_t, void (*)(void*)> owned(raw, &std::free);
    if (status == LIBMTP_ERROR_NO_DEVICE_ATTACHED || (status == LIBMTP_ERROR_NONE && count == 0))
        return androidOnUsb() ? chargingOnlyText : noPhoneText;
    if (status != LIBMTP_ERROR_NONE || !raw)
        return "The USB devices can't be read right now. Click Refresh to try again.";
    device = LIBMTP_Open_Raw_Device_Uncached(&raw[0]);
    // A desktop's own phone service often claims the device first; name whoever has it.
    return device ? std::string() : heldText(deviceHolders(deviceNode(raw[0])));
}

void LibmtpPhone::close() {
    if (device) LIBMTP_Release_Device(device);
    device = nullptr;
}

// A failing operation on a broken session closes it (see failure); one that only reads is then
// run once more on a fresh session, which is what makes a replugged phone answer at once.
std::string LibmtpPhone::session(const Operation& operation, bool readOnly) {
    if (std::string error = open(); !error.empty()) return error;
    LIBMTP_Clear_Errorstack(device);
    std::string error = operation();
    if (error.empty() || device || !readOnly) return error;
    if (std::string reopen = open(); !reopen.empty()) return reopen;
    LIBMTP_Clear_Errorstack(device);
    return operation();
}

bool LibmtpPhone::broken() const {
    for (LIBMTP_error_t* e = device ? LIBMTP_Get_Errorstack(device) : nullptr; e; e = e->next) {
        switch (e->errornumber) {
        case LIBMTP_ERROR_USB_LAYER:
        case LIBMTP_ERROR_NO_DEVICE_ATTACHED:
        case LIBMTP_ERROR_CONNECTING:
            return true;
        default:
            // PTP_ERROR_IO: the transport itself failed, not the command.
            if (e->error_text && (std::strstr(e->error_text, "02ff") || std::strstr(e->error_text, "02FF") ||
                                  std::strstr(e->error_text, "I/O")))
                return true;
        }
    }
    return false;
}

std::string LibmtpPhone::reason() const {
    LIBMTP_error_t* e = device ? LIBMTP_Get_Errorstack(device) : nullptr;
    if (!e || !e->error_text) return {};
    std::string text = e->error_text;
    while (!text.empty() && (text.back() == '\n' || text.back() == '.' || text.back() == ' '))
        text.pop_back();
    return text;
}

std::string LibmtpPhone::failure(const std::string& what) {
    const std::string why = reason();
    if (broken()) {
        close();
        return "The connection to the phone was interrupted. Check the cable and click Refresh.";
    }
    if (device) LIBMTP_Clear_Errorstack(device);
    return why.empty() ? what + "." : what + " (" + why + ").";
}

// An unknown handle is the phone's plain answer, unless the session broke while asking.
std::string LibmtpPhone::missing() {
    if (broken()) return failure("Cannot read this item");
    LIBMTP_Clear_Errorstack(device);
    return goneText;
}

// A locked phone shows no storage at all: that is not an empty phone.
std::string LibmtpPhone::loadStorages() {
    if (LIBMTP_Get_Storage(device, LIBMTP_STORAGE_SORTBY_NOTSORTED) != 0 && broken())
        return failure("Cannot read the phone's storages");
    LIBMTP_Clear_Errorstack(device);
    return device->storage ? std::string() : lockedText;
}

std::string LibmtpPhone::storages(std::vector<PhoneObject>& out) {
    return session(
        [&] {
            out.clear();
            if (std::string error = loadStorages(); !error.empty()) return error;
            for (LIBMTP_devicestorage_t* s = device->storage; s; s = s->next)
                out.push_back({rootHandle, s->id, storageLabel(s), true, 0, {}});
            return std::string();
        },
        true);
}

std::string LibmtpPhone::scan() {
    return session([this] { return loadStorages(); }, true);
}

// libmtp answers an empty folder and a failed listing both with no list; the error stack tells.
std::string LibmtpPhone::list(uint32_t storage, uint32_t parent, std::vector<PhoneObject>& out) {
    return session(
        [&] {
            out = takeList(LIBMTP_Get_Files_And_Folders(device, storage, folderHandle(parent)));
            if (out.empty() && LIBMTP_Get_Errorstack(device))
                return failure("Cannot read this folder on the phone");
            return std::string();
        },
        true);
}

std::optional<LibmtpPhone::ObjectFacts> LibmtpPhone::facts(uint32_t id) {
    LIBMTP_file_t* meta = id == rootHandle ? nullptr : LIBMTP_Get_Filemetadata(device, id);
    if (!meta) return std::nullopt;
    const ObjectFacts found{meta->filetype == LIBMTP_FILETYPE_FOLDER, meta->storage_id, meta->filesize};
    LIBMTP_destroy_file_t(meta);
    return found;
}

std::string LibmtpPhone::get(uint32_t id, int target, const std::string& name,
                             const TransferProgress& progress) {
    return session(
        [&] {
            const std::optional<ObjectFacts> object = facts(id);
            if (!object) return missing();
            if (object->folder) return std::string("A folder can't be copied as one file.");
            const int status =
                LIBMTP_Get_File_To_File_Descriptor(device, id, target, progressThunk, &progress);
            return status == 0 ? std::string() : failure("Cannot copy " + name + " from the phone");
        },
        false);
}

std::string LibmtpPhone::put(uint32_t storage, uint32_t parent, const std::string& path,
                             const TransferProgress& progress) {
    const std::string name = lastComponent(path);
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status;
    if (fd < 0 || ::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode) || !validName(name)) {
        if (fd >= 0) ::close(fd);
        return "Cannot read " + name + ": only files can be sent.";
    }
    const std::string error = session(
        [&] {
            LIBMTP_file_t* meta = LIBMTP_new_file_t();
            meta->filename = ::strdup(name.c_str());
            meta->filesize = uint64_t(status.st_size);
            meta->filetype = typeFor(name);
            meta->parent_id = folderHandle(parent);
            meta->storage_id = storage;
            const int sent =
                LIBMTP_Send_File_From_File_Descriptor(device, fd, meta, progressThunk, &progress);
            const uint32_t created = meta->item_id;
            LIBMTP_destroy_file_t(meta);
            if (sent == 0) return std::string();
            const std::string error = failure("Cannot send " + name + " to the phone");
            // The object is made before its bytes go; a cut-off send would leave it partial, and a
            // retry would then find its name taken. A broken session has been closed by now.
            if (created != 0 && device) {
                LIBMTP_Delete_Object(device, created);
                LIBMTP_Clear_Errorstack(device);
            }
            return error;
        },
        false);
    ::close(fd);
    return error;
}

std::string LibmtpPhone::makeFolder(uint32_t storage, uint32_t parent, const std::string& name,
                                    uint32_t& id) {
    if (!validName(name)) return "\u201c" + name + "\u201d is not a valid folder name.";
    return session(
        [&] {
            std::vector<char> text(name.begin(), name.end());
            text.push_back('\0');
            id = LIBMTP_Create_Folder(device, text.data(), folderHandle(parent), storage);
            return id != 0 ? std::string() : failure("Cannot create the folder " + name);
        },
        false);
}

// Not every phone deletes a folder with its contents, so those that refuse get emptied first.
std::string LibmtpPhone::remove(uint32_t id) {
    if (id == rootHandle || id == 0) return "A storage can't be deleted.";
    return session(
        [&] {
            const std::optional<ObjectFacts> object = facts(id);
            if (!object) return missing();
            if (LIBMTP_Delete_Object(device, id) == 0) return std::string();
            if (!object->folder || broken()) return failure("Cannot delete this item on the phone");
            LIBMTP_Clear_Errorstack(device);
            return removeTree(object->storage, id);
        },
        false);
}

std::string LibmtpPhone::removeTree(uint32_t storage, uint32_t id) {
    std::vector<PhoneObject> children = takeList(LIBMTP_Get_Files_And_Folders(device, storage, id));
    if (children.empty() && LIBMTP_Get_Errorstack(device)) return failure("Cannot read a folder to delete");
    for (const PhoneObject& child : children) {
        if (child.folder) {
            if (std::string error = removeTree(storage, child.id); !error.empty()) return error;
        } else if (LIBMTP_Delete_Object(device, child.id) != 0) {
            return failure("Cannot delete " + child.name + " on the phone");
        }
    }
    return LIBMTP_Delete_Object(device, id) == 0 ? std::string()
                                                 : failure("Cannot delete this folder on the phone");
}

std::string LibmtpPhone::rename(uint32_t id, const std::string& name) {
    if (!validName(name)) return "\u201c" + name + "\u201d is not a valid name.";
    return session(
        [&] {
            LIBMTP_file_t* meta = id == rootHandle ? nullptr : LIBMTP_Get_Filemetadata(device, id);
            if (!meta) return missing();
            const int status = LIBMTP_Set_File_Name(device, meta, name.c_str());
            LIBMTP_destroy_file_t(meta);
            return status == 0 ? std::string() : failure("Cannot rename this item on the phone");
        },
        false);
}

std::string LibmtpPhone::move(uint32_t id, uint32_t storage, uint32_t parent) {
    return session(
        [&] {
            const int status = LIBMTP_Move_Object(device, id, storage, folderHandle(parent));
            return status == 0 ? std::string() : failure("Cannot move this item on the phone");
        },
        false);
}

// Width, height and creation date are object properties; a phone that lacks one is no failure.
std::string LibmtpPhone::info(uint32_t id, PhoneObjectInfo& out) {
    return session(
        [&] {
            const std::optional<ObjectFacts> object = facts(id);
            if (!object) return missing();
            const uint32_t width = LIBMTP_Get_u32_From_Object(device, id, LIBMTP_PROPERTY_Width, 0);
            const uint32_t height = LIBMTP_Get_u32_From_Object(device, id, LIBMTP_PROPERTY_Height, 0);
            char* created = LIBMTP_Get_String_From_Object(device, id, LIBMTP_PROPERTY_DateCreated);
            out = {};
            if (width > 0 && height > 0) {
                out.width = width;
                out.height = height;
            }
            if (created && *created) out.created = std::string(created);
            std::free(created);
            if (broken()) return failure("Cannot read this item's details");
            LIBMTP_Clear_Errorstack(device);
            return std::string();
        },
        true);
}

std::string LibmtpPhone::thumbnail(uint32_t id, const std::string& path) {
    return session(
        [&] {
            unsigned char* data = nullptr;
            unsigned int size = 0;
            const int status = LIBMTP_Get_Thumbnail(device, id, &data, &size);
            std::unique_ptr<unsigned char, void (*)(void*)> owned(data, &std::free);
            if (status != 0 || !data || size == 0) {
                if (broken()) return failure("Cannot read the thumbnail");
                LIBMTP_Clear_Errorstack(device);
                return std::string(noThumbnailText);
            }
            const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
            const bool written = fd >= 0 && ::write(fd, data, size) == ssize_t(size);
            const bool closed = fd >= 0 && ::close(fd) == 0;
            if (written && closed) return std::string();
            if (fd >= 0) ::unlink(path.c_str());
            return "Cannot write the thumbnail to " + path + ".";
        },
        true);
}

} // namespace orvane
