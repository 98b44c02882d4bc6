#pragma once

#include <string>

namespace scenes {

/// What a walk through the store comes across, in an order that does not change from one start to the next.
/// Paths are relative to Documents. Names of centres and rooms may come again in another spelling of the same
/// name (see sameName()).
class StoreVisitor {
 public:
    virtual ~StoreVisitor() = default;

    /// A centre; what follows belongs to it, up to the next folder of its own or the next root entry.
    virtual void foundCentre(const std::string &centre) = 0;
    /// A room's file, which counts unless a later one of the same room does.
    virtual void foundRoom(const std::string &centre, const std::string &room, const std::string &path) = 0;
    /// A file of a room that another file already stands for; nobody reads it.
    virtual void foundDuplicate(const std::string &centre, const std::string &room,
                                const std::string &path) = 0;
    /// A folder, or what should be one, that cannot be listed.
    virtual void cannotList(const std::string &folder) = 0;
    /// An entry inside a centre whose name consists of dots: no program with our rules puts one there.
    virtual void foundNameless(const std::string &path) = 0;
};

/// Walks through the store below `documents`: a root entry without a dot is a centre, a file whose last piece
/// between dots is "presets" is the room that its first piece names. Opens no file, changes nothing.
void walkStore(const std::string &documents, StoreVisitor &visitor);

}  // namespace scenes
