#pragma once

class ContentView;

namespace ui {

/// What the buttons beside the pickers do. Each asks the user first, changes the tree in memory, then
/// the disk, and ends with exactly one refresh at the level that changed. A cancelled or empty answer, and
/// the name of a centre or room that is there already, change nothing and say nothing.

void addCentre(ContentView &view);
void deleteCentre(ContentView &view);
void addRoom(ContentView &view);
void deleteRoom(ContentView &view);
/// Saves where the camera points as a new last scene of the selected room. The refresh then sends the camera
/// to the room's first scene.
void saveScene(ContentView &view);
void deleteScene(ContentView &view);

}  // namespace ui
