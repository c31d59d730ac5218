#pragma once
// The object an entry of a folder holds: a directory with a side file
// ("entry.xml") that keeps the entry's kind, its description and what the
// kind adds (docs/project-format.md). Changes wait in memory until sync().
#include "exBase.h"
#include "omBaseInterface.h"
#include "rcBase.h"
#include "rcShdPtr.h"
#include "xmlElement.h"

#include <string>

namespace Qv {

class OmComponent : public RCBase<>, public OmBaseInterface {
public:
    // Syncs the component when the scope is left normally; when an exception
    // is unwinding, the changes stay pending and nothing is written.
    class SyncGuard {
    public:
        explicit SyncGuard(OmComponent& component);
        // Throws what sync() throws.
        ~SyncGuard() noexcept(false);
        SyncGuard(SyncGuard const&) = delete;
        SyncGuard& operator=(SyncGuard const&) = delete;

    private:
        RCShdPtr<OmComponent> _component;
        int _exceptions;
    };

    static char const* getSideFileName() { return "entry.xml"; }
    static constexpr int FORMAT_VERSION = 1;

    // Reads the component whose directory this is. Throws OmEx::ExBadEntry
    // naming the side file.
    static RCShdPtr<OmComponent> load(OsFilePath const& directory);

    OmComponent(OmComponent const&) = delete;
    OmComponent& operator=(OmComponent const&) = delete;

    // What the side file calls this kind ("composition").
    virtual std::string getKind() const = 0;

    void setDescription(std::string description);
    std::string const& getDescription() const { return _description; }

    // OmFolder::addEntry has given it a place.
    bool isInFolder() const { return !_path.isEmpty(); }
    bool hasPendingChanges() const { return _changed; }

    bool isNull() const override { return false; }
    // Writes the side file when something changed. Asserts "isInFolder()".
    void sync() override;
    // The entry's directory; empty until it is in a folder.
    OsFilePath getPath() const override { return _path; }
    std::string getName() const override { return _name; }

protected:
    explicit OmComponent(std::string name) : _name(std::move(name)) {}

    // What the kind keeps in the side file, as children and attributes of
    // the root element. `sideFile` names the file in errors (OmEx::ExBadEntry).
    virtual void writeContent(XmlElement& entry) const = 0;
    virtual void readContent(XmlElement const& entry, OsFilePath const& sideFile) = 0;
    void markChanged() { _changed = true; }

private:
    friend class OmFolder;

    XmlElement toXml() const;
    // Into the directory of an entry being made.
    void writeSideFile(OsFilePath const& directory) const;
    void placeIn(OsFilePath const& directory);

    std::string _name;
    OsFilePath _path;
    std::string _description;
    bool _changed = false;
};

} // namespace Qv
