#include "platform/qt/spanish.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>
#include <string_view>

#ifdef ZEL_EMBEDS_QTBASE_ES
// Outside every namespace, as the macro demands.
static void initSpanishResource() {
    Q_INIT_RESOURCE(qt_spanish);
}
#endif

namespace platform {
namespace {

struct Text {
    std::string_view context;
    std::string_view english;
    const char *spanish;
};

// Texts of Qt's file panels that its Spanish translation lacks or words differently.
constexpr std::array kMissing{
    Text{"QAbstractFileIconProvider", "Drive", "Unidad"},
    Text{"QAbstractFileIconProvider", "Folder", "Carpeta"},
    Text{"QAbstractFileIconProvider", "File Folder", "Carpeta"},
    Text{"QAbstractFileIconProvider", "File", "Fichero"},
    Text{"QAbstractFileIconProvider", "%1 File", "Fichero %1"},
    Text{"QAbstractFileIconProvider", "Shortcut", "Acceso directo"},
    Text{"QAbstractFileIconProvider", "Unknown", "Desconocido"},
    Text{"QFileDialog", "%1 Folder", "Carpeta %1"},
    Text{"QFileDialog", "Go to the parent directory", "Ir al directorio superior"},
};

class MissingTexts final : public QTranslator {
 public:
    using QTranslator::QTranslator;

    [[nodiscard]] bool isEmpty() const override { return false; }

    [[nodiscard]] QString translate(const char *context, const char *sourceText, const char *,
                                    int) const override {
        if (!context || !sourceText) return {};
        const auto *found = std::find_if(kMissing.begin(), kMissing.end(), [&](const Text &text) {
            return text.context == context && text.english == sourceText;
        });
        return found == kMissing.end() ? QString() : QString::fromUtf8(found->spanish);
    }
};

/// Qt's Spanish, but with this product's word for a file.
class QtSpanish final : public QTranslator {
 public:
    using QTranslator::QTranslator;

    [[nodiscard]] QString translate(const char *context, const char *sourceText, const char *disambiguation,
                                    int n) const override {
        return QTranslator::translate(context, sourceText, disambiguation, n)
            .replace(QStringLiteral("archivo"), QStringLiteral("fichero"))
            .replace(QStringLiteral("Archivo"), QStringLiteral("Fichero"));
    }
};

bool loadQtSpanish(QTranslator &translator) {
#ifdef ZEL_EMBEDS_QTBASE_ES
    initSpanishResource();
    if (translator.load(QStringLiteral(":/translations/qtbase_es.qm"))) return true;
#endif
    return translator.load(QStringLiteral("qtbase_es"), QLibraryInfo::path(QLibraryInfo::TranslationsPath));
}

}  // namespace

void speakSpanish(QApplication &application) {
    QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    std::setlocale(LC_NUMERIC, "C");

    auto *qtSpanish = new QtSpanish(&application);
    if (loadQtSpanish(*qtSpanish)) {
        QCoreApplication::installTranslator(qtSpanish);
    } else {
        std::fputs("WARNING: Qt's Spanish texts are not installed\n", stderr);
    }
    QCoreApplication::installTranslator(new MissingTexts(&application));
}

}  // namespace platform
