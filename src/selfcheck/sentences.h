#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "selfcheck/line.h"

namespace selfcheck {

/// What can be said, by the parts of a report. The words are in the table (sentence_table.cpp).
enum class Sentence {
    // clang-format off
    // the verdict
    nothingSeen, roomCameraIsBroken, onlyAnotherModel, onlyOtherModels, noCamera,
    cameraDenied, cameraBusy, cameraGone, cameraSilent, cameraUnopened,
    positionNotTold, disobeys, offersNothing, lacksSomething, tooSlowToTell, cannotStart,
    notNormal, hasTwin, hasTwins, accessToLookAt, filesToLookAt,
    obeysSlowly, obeys, looksSound, looksSoundFromMemory,

    // the trial of an order
    orderUnanswered, orderGone, orderDenied, orderBusy, orderUnread, orderOutsideRange, orderRefused,
    orderAccepted, orderAcceptedLate,

    // the cameras
    busUnread, notConnected, twoOfTheModel, severalOfTheModel,
    roomCamera, otherModel, sameModel, brokenCamera,

    // the access
    accessUnknown, noDriver, kernelDriver, claimedByProgram, otherDriver, unknownDriver,
    noFile, fileOpens, videoFileDenied, usbFileDenied, fileBusy, fileUnopened,
    noPrograms, programs, programsUnseen, programsHarmless,
    goneMeanwhile, openDenied, openBusy, openFailed, answersTooLate, answersSlowly,

    // pan, tilt and zoom
    notOffered, notAsked, notSettable,
    position, positionFromSystem, positionUnknown, limits, limitsWithoutRange, limitsUnknown,
    rangeReversed, rangeEmpty, positionOutside, defaultOutside, resolutionTooSmall, limitsRefused,
    requestUnanswered, requestGone, neededRequestRefused, requestRefused, neededRequestFailed, requestFailed,

    // the scenes
    noDocuments, noStore, storeSummary, folderUnlisted, nameOfDots,
    fileFatal, fileHidden, fileHiddenUnreadable,
    fileDenied, fileIsDanglingLink, fileUnreadable, notAFile, fileTooLarge, fileEmpty, fileWithoutScenes,
    roomEmpty, room, centreEmpty
    // clang-format on
};

inline constexpr std::size_t kSentences = static_cast<std::size_t>(Sentence::centreEmpty) + 1;

/// The finding that this sentence makes. `values` take the places of the words in braces, in their order:
/// first those of the text, then those of the detail.
[[nodiscard]] Line say(Sentence sentence, const std::vector<std::string> &values = {});

}  // namespace selfcheck
