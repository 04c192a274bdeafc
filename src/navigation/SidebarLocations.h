#pragma once

#include "navigation/SidebarTreeSnapshot.h"

namespace orvane {

// What the "Locations" section is made of, gathered from the system by current() or given by a test.
struct SidebarLocations {
    struct Mount {
        QString root;
        QString type; // the file system's type as the mount table says it
        bool writable = false;
    };

    QString rootWord;          // the platform's name for "/"
    QString home;              // a mount holding the home folder is reached through Home
    QString applications;      // the platform's applications folder, empty where there is none
    QStringList volumeFolders; // where the desktop mounts removable volumes for this user
    QList<Mount> mounts;       // in mount order
    bool phoneConnected = false;
    bool trashFull = false;
    QString phoneState; // why a phone on the cable can't be read, shown with its row

    static SidebarLocations current(bool phoneConnected, const QString& phoneState = {});

    // Applications, the root file system, the user's volumes, the Trash, then "Android USB" while a
    // phone is connected. A volume is a mount directly inside a volume folder, or any other real file
    // system the user can write to outside the system's own folders.
    QList<SidebarPlace> places() const;

private:
    bool isVolume(const Mount& mount) const;
};

} // namespace orvane
