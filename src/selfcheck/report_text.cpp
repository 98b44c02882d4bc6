#include "selfcheck/report_text.h"

namespace selfcheck {
namespace {

std::string lineText(const Line &line) {
    const std::string text = "[" + stateWord(line.state) + "] " + line.text + "\n";
    return line.detail.empty() ? text : text + "        " + line.detail + "\n";
}

}  // namespace

std::string textOf(const Report &report, const std::string &date, const std::string &version) {
    std::string text = "¿Por qué no se mueve la cámara?\n";
    text += "Fecha: " + date + "\nVersión: " + version + "\n\n" + lineText(report.verdict);
    for (const Section &section : report.sections) {
        text += "\n" + section.title + "\n";
        for (const Line &line : section.lines) text += lineText(line);
    }
    return text;
}

}  // namespace selfcheck
