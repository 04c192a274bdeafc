#include "core/Services.h"

#include "core/Applications.h"
#include "core/FolderColors.h"
#include "core/Jobs.h"
#include "core/PinnedStore.h"
#include "core/Settings.h"
#include "platform/TypeIndex.h"

namespace orvane {

Services::Services(QObject* parent)
    : QObject(parent), jobList(new Jobs(this)), prefs(new Settings(this)),
      pinList(std::make_unique<PinnedStore>(*prefs)), apps(std::make_unique<Applications>()),
      colors(new FolderColors(*prefs, this)) {}

Services::Services(const QString& settingsFile, QObject* parent)
    : QObject(parent), jobList(new Jobs(this)), prefs(new Settings(settingsFile, this)),
      pinList(std::make_unique<PinnedStore>(*prefs)), apps(std::make_unique<Applications>()),
      colors(new FolderColors(*prefs, this)) {}

Services::~Services() = default;

const TypeIndex& Services::types() const {
    return TypeIndex::shared();
}

void Services::provide(FileClipboard& clipboard, FileIcons& icons) {
    clip = &clipboard;
    iconSet = &icons;
}

void Services::provideMedia(AudioPreview& audio, VideoPreview& video) {
    audioPlayer = &audio;
    videoPlayer = &video;
}

void Services::provideMediaFacts(MediaThumbnails& thumbnails, MediaDimensions& dimensions) {
    pictures = &thumbnails;
    sizes = &dimensions;
}

} // namespace orvane
