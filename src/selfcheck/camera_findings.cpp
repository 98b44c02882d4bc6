// Which cameras there are, and how the system lets us to the one that is moved.

#include <algorithm>
#include <cstdio>

#include "model/camera_models.h"
#include "scenes/utf8.h"
#include "selfcheck/findings.h"
#include "selfcheck/sentences.h"

namespace selfcheck {
namespace {

/// "vvvv:pppp", hexadecimal.
std::string idsText(std::uint16_t vendorId, std::uint16_t productId) {
    char ids[16];
    std::snprintf(ids, sizeof ids, "%04x:%04x", unsigned{vendorId}, unsigned{productId});
    return ids;
}

/// Of every model, with "o" between them.
std::string supportedIds() {
    std::string list;
    for (const model::Record &record : model::kRecords)
        list.append(list.empty() ? "" : " o ").append(record.ids);
    return list;
}

/// "bus 1, puerto 2.1".
std::string placeOf(const CameraFacts &camera) {
    if (!camera.locationId) return "lugar desconocido";
    std::string ports;
    for (int shift = 20; shift >= 0; shift -= 4) {
        const std::uint32_t port = (*camera.locationId >> shift) & 0xFu;
        if (port == 0) break;
        ports += (ports.empty() ? "" : ".") + std::to_string(port);
    }
    return "bus " + std::to_string(*camera.locationId >> 24) + ", puerto " + (ports.empty() ? "?" : ports);
}

std::string nameOf(const CameraFacts &camera) {
    return camera.name.empty() ? "sin nombre" : "«" + scenes::repairUtf8(camera.name) + "»";
}

Line cameraLine(const CameraFacts &camera, bool isMoved) {
    const auto sentence = [&] {
        if (isMoved) return Sentence::roomCamera;
        if (!camera.isSupported) return Sentence::otherModel;
        return camera.isUsable ? Sentence::sameModel : Sentence::brokenCamera;
    };
    return say(sentence(), {nameOf(camera), idsText(camera.vendorId, camera.productId), placeOf(camera)});
}

/// Whether a driver that is not for cameras holds it, so that no program can use it.
bool isHeldByOtherDriver(const Facts &facts) {
    const usb::InterfaceReport &access = *facts.access;
    return access.holder == usb::Holder::otherDriver && access.backend != usb::Backend::driver;
}

Line driverLine(const Facts &facts) {
    const usb::InterfaceReport &access = *facts.access;
    switch (access.holder) {
        case usb::Holder::nobody:
            return say(Sentence::noDriver);
        case usb::Holder::cameraDriver:
            return say(Sentence::kernelDriver, {access.holderName});
        case usb::Holder::program:
            return say(Sentence::claimedByProgram, {access.holderName});
        case usb::Holder::otherDriver:
            break;
    }
    return say(isHeldByOtherDriver(facts) ? Sentence::otherDriver : Sentence::unknownDriver,
               {access.holderName});
}

Line permissionLine(const usb::InterfaceReport &access) {
    if (access.path.empty()) return say(Sentence::noFile);
    switch (access.access) {
        case usb::Outcome::done:
            return say(Sentence::fileOpens, {access.path});
        case usb::Outcome::denied:
            return say(
                access.backend == usb::Backend::driver ? Sentence::videoFileDenied : Sentence::usbFileDenied,
                {access.path});
        case usb::Outcome::busy:
            return say(Sentence::fileBusy, {access.path});
        default:
            return say(Sentence::fileUnopened, {access.path});
    }
}

Line programsLine(const Facts &facts) {
    const usb::InterfaceReport &access = *facts.access;
    std::string detail = access.sawEveryProgram ? "" : say(Sentence::programsUnseen).text;
    if (access.programs.empty()) return say(Sentence::noPrograms, {detail});
    std::string names;
    for (const usb::ProgramHolding &program : access.programs)
        names += (names.empty() ? "" : ", ") + scenes::repairUtf8(program.name) + " (proceso " +
                 std::to_string(program.processId) + (program.streams ? ", recibiendo imagen)" : ")");
    // Without the kernel's driver, a program that has the camera open does keep it from moving.
    if (usesKernelDriver(facts)) detail += (detail.empty() ? "" : " ") + say(Sentence::programsHarmless).text;
    return say(Sentence::programs, {names, detail});
}

void addPace(Section &section, const Facts &facts) {
    if (facts.isTooSlow)
        section.lines.push_back(say(Sentence::answersTooLate, {std::to_string(usb::kRequestTimeout)}));
    else if (!facts.givenUp && facts.slowest >= kSlowTransfer)
        section.lines.push_back(say(Sentence::answersSlowly, {std::to_string(facts.slowest.count())}));
}

bool isToldByRequest(const ControlFacts &control, usb::Outcome outcome) {
    return std::ranges::any_of(
        control.failures, [outcome](const FailedRequest &failure) { return failure.outcome == outcome; });
}

/// Why the camera was not asked any further, where nothing else tells it: a camera may be gone, or refuse to
/// open, a moment after its file was looked at.
void addReasonToStop(Section &section, const Facts &facts) {
    const usb::Outcome reason = *facts.givenUp;
    if (isToldByRequest(facts.panTilt, reason) || isToldByRequest(facts.zoom, reason)) return;
    if (reason == usb::Outcome::disconnected) {
        section.lines.push_back(say(Sentence::goneMeanwhile));
        return;
    }
    if (section.state() == State::fault) return;
    if (reason == usb::Outcome::denied)
        section.lines.push_back(say(Sentence::openDenied));
    else
        section.lines.push_back(
            say(reason == usb::Outcome::busy ? Sentence::openBusy : Sentence::openFailed));
}

}  // namespace

Section busFindings(const Facts &facts) {
    Section section{"Cámaras conectadas", {}};
    if (!facts.busWasRead) {
        section.lines.push_back(say(Sentence::busUnread));
        return section;
    }
    const auto supported = std::ranges::count_if(facts.cameras, &CameraFacts::isSupported);
    if (supported == 0) section.lines.push_back(say(Sentence::notConnected, {supportedIds()}));
    if (supported == 2) section.lines.push_back(say(Sentence::twoOfTheModel));
    if (supported > 2) section.lines.push_back(say(Sentence::severalOfTheModel, {std::to_string(supported)}));
    for (std::size_t i = 0; i < facts.cameras.size(); ++i)
        section.lines.push_back(cameraLine(facts.cameras[i], facts.moved == i));
    return section;
}

Section accessFindings(const Facts &facts) {
    Section section{"Acceso a la cámara", {}};
    if (!facts.access) {
        section.lines.push_back(say(Sentence::accessUnknown));
    } else {
        section.lines.push_back(driverLine(facts));
        // The file is busy because of that driver, as the line above says.
        if (!isHeldByOtherDriver(facts) || facts.access->access != usb::Outcome::busy)
            section.lines.push_back(permissionLine(*facts.access));
        section.lines.push_back(programsLine(facts));
    }
    if (facts.givenUp && !facts.isTooSlow) addReasonToStop(section, facts);
    addPace(section, facts);
    return section;
}

}  // namespace selfcheck
