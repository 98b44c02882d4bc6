#include "simulator/edition/sample_store.h"

#include <string>
#include <vector>

#include "scenes/scene_file.h"
#include "scenes/scene_tree.h"
#include "scenes/store_paths.h"

namespace simulator {
namespace {

struct SampleRoom {
    std::string centre;
    std::string room;
    std::vector<ManualPreset> scenes;
};

ManualPreset scene(const char *name, std::int64_t pan, std::int64_t tilt, std::int64_t zoom) {
    ManualPreset preset;
    preset.Name = name;
    preset.Pan = pan;
    preset.Tilt = tilt;
    preset.Zoom = zoom;
    return preset;
}

std::vector<SampleRoom> sampleRooms() {
    const ManualPreset board = scene("Pizarra", 0, 0, 60);
    const ManualPreset formula = scene("Detalle de la pizarra", 6, 2, 420);
    const ManualPreset teacher = scene("Profesora", -26, -3, 400);
    const ManualPreset screen = scene("Pantalla de proyección", 50, 2, 150);
    const ManualPreset door = scene("Puerta", -57, -1, 150);
    const ManualPreset windows = scene("Ventanas", 88, 2, 0);
    const ManualPreset audience = scene("Público", 140, -4, 0);
    const ManualPreset overview = scene("Vista general", 25, 1, 0);

    return {
        {scenes::kNoCentre, "Sala de reuniones", {overview, screen, door}},
        {"Escuela de Ingeniería", "Aula Magna", {board, formula, screen, audience}},
        {"Escuela de Ingeniería", "Laboratorio de Óptica", {teacher, windows}},
        {"Facultad de Ciencias", "Aula 1", {overview, board, teacher, audience}},
        {"Facultad de Ciencias", "Aula 2", {screen, board, door}},
        {"Facultad de Ciencias", "Seminario", {}},
        {"Rectorado", "Salón de Grados", {audience, overview, windows}},
    };
}

}  // namespace

void writeSampleStore() {
    const scenes::SceneTree present = obtenerPresets();
    if (present.size() > 1 || !present.begin()->second.empty()) return;

    for (const SampleRoom &room : sampleRooms()) {
        if (room.centre != scenes::kNoCentre) crearDirectorioSiNoExiste(scenes::centrePath(room.centre));
        PresetToFile(scenes::roomPath(room.centre, room.room), room.scenes);
    }
}

}  // namespace simulator
