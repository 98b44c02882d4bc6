#pragma once

#include <string>

namespace scenes {

/// What a walk through the store comes across. Paths are relative to Documents. A centre or a room may come
/// several times, also in another spelling of the same name (see sameName()): several files may stand for one
/// room. The last one counts. It is the file that the next save of the room replaces, if there is one.
class StoreVisitor {
 public:
    virtual ~StoreVisitor() = default;

    virtual void foundCentre(const std::string &centre) = 0;
    virtual void foundRoom(const std::string &centre, const std::string &room, const std::string &path) = 0;
    /// A folder, or what should be one, that cannot be listed.
    virtual void cannotList(const std::string &folder) = 0;
    /// An entry inside a centre whose name is dots only; this program makes no such file.
    virtual void foundNameless(const std::string &path) = 0;
};

/// Walks through the store below `documents`: a root entry without a dot is a centre, a file whose last piece
/// between dots is "presets" is the room that its first piece names. The order does not change from one start
/// to the next. Opens no file, changes nothing.
void walkStore(const std::string &documents, StoreVisitor &visitor);

}  // namespace scenes
