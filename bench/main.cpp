// Everything that is measured on the machine itself, and the table of it. Compare within one run only.
#include <QApplication>

#include "comparison.h"

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // A platform without a screen tells of each window that it cannot raise.
    qputenv("QT_LOGGING_RULES", "*.warning=false");
    QApplication application(argc, argv);
    return bench::runAndCompare(
        argc, argv,
        {
            {"read a store of 10 scenes / decrypt the same bytes", "BM_ReadStore/10", {"BM_DecryptStore/10"}},
            {"of 1,000 scenes", "BM_ReadStore/1000", {"BM_DecryptStore/1000"}, 1.25},
            {"of 100,000 scenes", "BM_ReadStore/100000", {"BM_DecryptStore/100000"}, 1.25},
            {"memory to read a large file of scenes / its bytes",
             "BM_ReadLargeFile/0",
             {"BM_LoadLargeFile/0"},
             4,
             "MB"},
            {"of nothing but null", "BM_ReadLargeFile/1", {"BM_LoadLargeFile/1"}, 4, "MB"},
            {"of bytes that are no text", "BM_ReadLargeFile/2", {"BM_LoadLargeFile/2"}, 4, "MB"},
            {"of a name without an end", "BM_ReadLargeFile/3", {"BM_LoadLargeFile/3"}, 4, "MB"},
            {"of characters that become longer", "BM_ReadLargeFile/4", {"BM_LoadLargeFile/4"}, 4, "MB"},
            {"of letters that no key wrote", "BM_ReadLargeFile/5", {"BM_LoadLargeFile/5"}, 4, "MB"},
            {"time of it", "BM_ReadLargeFile/5", {"BM_LoadLargeFile/5"}},
            {"save a room of ten / write, flush and rename the same bytes",
             "BM_SaveRoom",
             {"BM_BareSave"},
             1.5},
            {"read a type description / sscanf", "BM_ReadTypeDescription", {"BM_SscanfTypeDescription"}, 3},
            {"read a value string / sscanf", "BM_ReadValue", {"BM_SscanfValue"}, 3},
            {"read a value string of fractions / sscanf", "BM_ReadFractions", {"BM_SscanfFractions"}, 3},
            {"write a value string / snprintf", "BM_WriteValue", {"BM_SnprintfValue"}, 3},
            {"start to the first window, no scenes / a bare window", "BM_Start/0", {"BM_StartBare"}, 1.5},
            {"processor time of it", "BM_Start/0", {"BM_StartBare"}, 1.5, "ms"},
            {"memory after it", "BM_Start/0", {"BM_StartBare"}, 1.3, "MB"},
            {"start / a window with as many widgets", "BM_Start/0", {"BM_StartPlain"}},
            {"processor time of it", "BM_Start/0", {"BM_StartPlain"}, 0, "ms"},
            {"memory after it", "BM_Start/0", {"BM_StartPlain"}, 0, "MB"},
            {"start with 1,000 scenes / start, and read them",
             "BM_Start/1000",
             {"BM_Start/0", "BM_ReadStore/1000"},
             1},
            {"1,000 centres shown", "BM_CascadeCentres/1000", {}, 16},
            {"1,000 rooms shown", "BM_CascadeRooms/1000", {}, 16},
            {"1,000 scenes shown", "BM_CascadeScenes/1000", {}, 16},
            {"a picker of 1,000 opened", "BM_OpenPicker/1000", {}, 16},
            {"10,000 centres / 1,000", "BM_CascadeCentres/10000", {"BM_CascadeCentres/1000"}, 12},
            {"10,000 rooms / 1,000", "BM_CascadeRooms/10000", {"BM_CascadeRooms/1000"}, 12},
            {"10,000 scenes / 1,000", "BM_CascadeScenes/10000", {"BM_CascadeScenes/1000"}, 12},
            {"a picker of 10,000 / of 1,000", "BM_OpenPicker/10000", {"BM_OpenPicker/1000"}, 12},
            {"recall a scene, simulated bus / the same requests, bare",
             "BM_RecallScene",
             {"BM_BareRequests"}},
            {"the same, allocations", "BM_RecallScene", {"BM_BareRequests"}, 0, "allocations"},
        });
}
