#pragma once

#include <QObject>
#include <memory>

namespace orvane {

class AppUpdates;
class Applications;
class AudioPreview;
class FileClipboard;
class FileIcons;
class FolderColors;
class Jobs;
class MediaDimensions;
class MediaThumbnails;
class PinnedStore;
class Settings;
class TypeIndex;
class VideoPreview;

// The process-wide objects every window shares, owned by the application object and reached as
// `window.services()`. A new process-wide object is added here and nowhere else; a test gives the
// application its own (a settings file of its own) in one place.
class Services : public QObject {
    Q_OBJECT
public:
    // The user's own settings.
    explicit Services(QObject* parent = nullptr);
    // Settings in a file of their own.
    explicit Services(const QString& settingsFile, QObject* parent = nullptr);
    ~Services() override;

    Jobs& jobs() const { return *jobList; }
    Settings& settings() const { return *prefs; }
    PinnedStore& pins() const { return *pinList; }
    FolderColors& folderColors() const { return *colors; }
    const TypeIndex& types() const;
    // Which applications open files, and opening with them.
    const Applications& applications() const { return *apps; }
    // Objects of the layers above, handed in by the application object when it starts.
    FileClipboard& clipboard() const { return *clip; }
    FileIcons& icons() const { return *iconSet; }
    void provide(FileClipboard& clipboard, FileIcons& icons);
    AppUpdates& updates() const { return *updateCheck; }
    void provideUpdates(AppUpdates& updates) { updateCheck = &updates; }
    // The two players; null until the application object hands them in.
    AudioPreview* audio() const { return audioPlayer; }
    VideoPreview* video() const { return videoPlayer; }
    void provideMedia(AudioPreview& audio, VideoPreview& video);
    MediaThumbnails& thumbnails() const { return *pictures; }
    MediaDimensions& dimensions() const { return *sizes; }
    void provideMediaFacts(MediaThumbnails& thumbnails, MediaDimensions& dimensions);

private:
    Jobs* jobList;
    Settings* prefs;
    std::unique_ptr<PinnedStore> pinList;
    std::unique_ptr<Applications> apps;
    FolderColors* colors;
    FileClipboard* clip = nullptr;
    FileIcons* iconSet = nullptr;
    AppUpdates* updateCheck = nullptr;
    AudioPreview* audioPlayer = nullptr;
    VideoPreview* videoPlayer = nullptr;
    MediaThumbnails* pictures = nullptr;
    MediaDimensions* sizes = nullptr;
};

} // namespace orvane
