#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/observable.h"

class ContentView;

namespace ui {

/// A list of names with one of them selected: what ContentView's L_Grupos and L_Subgrupos have in common.
class ElementList {
 public:
    ElementList();

    std::vector<std::string> Lista;
    ContentView *padre = nullptr;  ///< the owning view, or none; not owned
    Observable<std::int64_t> selectedElemento{0};
    Observable<std::string> id;  ///< a random UUID

    void asignarPadre(ContentView *newPadre) { padre = newPadre; }
    void actualizaLista(std::vector<std::string> nuevaLista) { Lista = std::move(nuevaLista); }
    [[nodiscard]] const std::vector<std::string> &listaNames() const { return Lista; }
    [[nodiscard]] std::int64_t elementosCount() const { return static_cast<std::int64_t>(Lista.size()); }
};

}  // namespace ui
