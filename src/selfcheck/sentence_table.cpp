#include "selfcheck/sentence_table.h"

#include <array>

// Words that several sentences end with.
#define CABLE_AND_POWER "Compruebe el cable USB en los dos extremos y que la cámara tenga corriente."
#define FILE_SHOWN_EMPTY                                                                                      \
    "{fichero} — El programa muestra esta aula sin escenas. No guarde nada en ella antes de recuperar una " \
    "copia."
#define PLUG_IN_AGAIN "Desenchufe la cámara y vuelva a enchufarla."
#define RESTART "Desenchúfela de la corriente, espere diez segundos y vuelva a enchufarla"
#define SEE_BELOW "Está señalado más abajo."
#define TO_DO "Pulse «Probar una orden» para saberlo."

namespace selfcheck {
namespace {

using enum State;
using enum Sentence;

// The first words are also «La cámara contesta» or «La cámara obedece».
constexpr SentenceRow kVerdicts[] = {
    {nothingSeen, fault, "No se pueden ver los dispositivos USB de este equipo.",
     "Reinicie el equipo y compruebe de nuevo.", ""},
    {roomCameraIsBroken, fault,
     "La cámara está conectada, pero no se presenta como una cámara que se pueda mover.", RESTART ".", ""},
    {onlyAnotherModel, fault,
     "No se ve ninguna cámara que este programa sepa mover; la que hay conectada es de otro modelo.",
     "Conecte la cámara motorizada del aula.", ""},
    {onlyOtherModels, fault,
     "No se ve ninguna cámara que este programa sepa mover; las que hay conectadas son de otros modelos.",
     "Conecte la cámara motorizada del aula.", ""},
    {noCamera, fault, "No se ve ninguna cámara conectada a este equipo.", CABLE_AND_POWER, ""},
    {cameraDenied, fault, "La cámara está conectada, pero este usuario no tiene permiso para usarla.", "",
     "Más abajo se dice a qué fichero, y el remedio"},
    {cameraBusy, fault, "La cámara está conectada, pero otro programa o controlador la tiene ocupada.", "",
     "Más abajo se dice cuál"},
    {cameraGone, fault, "La cámara se ha desconectado durante la comprobación.",
     "Compruebe el cable USB y vuelva a comprobar.", ""},
    {cameraSilent, fault, "La cámara está conectada, pero no contesta.", RESTART ".", "Está colgada"},
    {cameraUnopened, fault, "La cámara está conectada, pero no se puede abrir.", "",
     "Desenchufarla y volver a enchufarla"},
    {positionNotTold, fault, "La cámara no ha dicho su posición, así que no se sabe si obedece.", RESTART ".",
     "No se ha enviado la orden"},
    {disobeys, fault, "La cámara no obedece: no ha aceptado la orden.",
     "Más abajo se dice cuál. " RESTART ". Si sigue igual, mire en su menú si está bloqueada.",
     "Se deja leer, pero no mover"},
    {offersNothing, fault, "La cámara está conectada, pero no ofrece ni giro ni zoom.", "",
     "Es otra versión de la cámara, o está en un modo sin motor"},
    {lacksSomething, fault, "La cámara está conectada, pero le falta algo para poder moverla.",
     "Los fallos están señalados más abajo.", ""},
    {tooSlowToTell, warning,
     "La cámara contesta, pero demasiado despacio: no se le ha preguntado todo, así que no se sabe si se "
     "puede mover.",
     "Conéctela directamente al equipo y compruebe de nuevo.", ""},
    {cannotStart, fault,
     "{La cámara contesta}, pero el programa no puede arrancar con las escenas guardadas.",
     "Más abajo se dice qué fichero hay que apartar.", ""},
    {notNormal, warning, "{La cámara contesta}, pero hay algo en ella que no es normal.", SEE_BELOW, ""},
    {hasTwin, warning, "{La cámara contesta}, pero hay conectada otra cámara del mismo modelo.",
     "Más abajo se dice cuál de ellas se mueve.", ""},
    {hasTwins, warning, "{La cámara contesta}, pero hay conectadas otras cámaras del mismo modelo.",
     "Más abajo se dice cuál de ellas se mueve.", ""},
    {accessToLookAt, warning, "{La cámara contesta}, pero hay algo que mirar en cómo se llega a ella.",
     SEE_BELOW, ""},
    {filesToLookAt, warning, "{La cámara contesta}. Hay ficheros de escenas con problemas.", SEE_BELOW, ""},
    {obeysSlowly, warning, "{La cámara obedece}, pero despacio.", SEE_BELOW, ""},
    {obeys, good, "{La cámara obedece}, y las escenas guardadas se pueden leer.", "",
     "Si con las flechas no se mueve, el fallo es de su motor: servicio técnico"},
    {looksSound, good, "{La cámara contesta} y no se ve ningún problema. Falta saber si obedece.",
     "Solo se le ha preguntado; no se le ha dado ninguna orden. " TO_DO, ""},
    {looksSoundFromMemory, information,
     "{La cámara está conectada} y no se ve ningún problema. Falta saber si obedece.",
     "No se le ha dado ninguna orden, y a las preguntas puede haber contestado el sistema de memoria. " TO_DO,
     ""},
};

constexpr SentenceRow kTrialSentences[] = {
    {orderAccepted, good, "{Zoom}: la cámara ha aceptado la orden", "Ha tardado {30 milisegundos}.",
     "Obedece; si con las flechas no se mueve, el fallo es de su motor: servicio técnico"},
    {orderAcceptedLate, warning, "{Zoom}: la cámara ha aceptado la orden", "Ha tardado {700 milisegundos}.",
     "Medio segundo o más por petición: quitar concentradores y alargadores"},
    {orderRefused, fault, "{Zoom}: la cámara ha rechazado la orden", "",
     "Se deja leer, pero no mover: quitarle la corriente; mirar si está bloqueada en su menú"},
    {orderUnanswered, fault, "{Zoom}: la cámara no ha contestado a tiempo", "",
     "Está colgada, aunque el sistema recuerde su posición: quitarle la corriente diez segundos"},
    {orderUnread, fault, "{Zoom}: no se ha podido leer la posición", "Por eso no se ha enviado la orden.",
     "Quitarle la corriente diez segundos"},
    {orderOutsideRange, information, "{Zoom}: no se ha probado",
     "La cámara dice estar fuera de su propio rango. Elija una escena y compruebe de nuevo.",
     "No aceptaría esa posición"},
    {orderGone, fault, "{Zoom}: la cámara ya no está conectada", "",
     "Se ha desenchufado después de la comprobación: comprobar de nuevo"},
    {orderDenied, fault, "{Zoom}: el sistema no ha permitido abrir la cámara", "",
     "Ya no hay permiso: comprobar de nuevo"},
    {orderBusy, fault, "{Zoom}: otro programa tiene ocupada la cámara", "",
     "La ha tomado después de la comprobación: comprobar de nuevo"},
};

constexpr SentenceRow kCameraSentences[] = {
    {roomCamera, good, "Cámara del aula conectada: {«Cámara»}",
     "Identificación {identificación}, {bus 1, puerto 2}.", ""},
    {notConnected, fault, "No está conectada la cámara del aula",
     "Se busca la identificación {identificación}. " CABLE_AND_POWER,
     "En el bus USB no está ese modelo: probar también otro puerto"},
    {otherModel, information, "Otra cámara, que este programa no mueve: {«Cámara web»}",
     "Identificación {identificación}, {bus 1, puerto 3}.", "Una cámara web, por ejemplo"},
    {twoOfTheModel, warning, "Hay 2 cámaras del mismo modelo; el programa mueve la última de esta lista",
     "Si es la otra la que tiene que moverse, desenchufe la que sobra.", "Y solo a ella se le pregunta"},
    {severalOfTheModel, warning,
     "Hay {3} cámaras del mismo modelo; el programa mueve la última de esta lista",
     "Si es otra la que tiene que moverse, desenchufe las que sobran.", "Y solo a ella se le pregunta"},
    {sameModel, information, "Cámara del mismo modelo, que no se mueve: {«Cámara»}",
     "Identificación {identificación}, {bus 1, puerto 4}.", ""},
    {brokenCamera, fault, "Cámara del aula con una descripción USB incorrecta: {«Cámara»}",
     "Identificación {identificación}, {bus 1, puerto 2}. " RESTART ".", "La cámara arrancó mal"},
    {busUnread, fault, "No se pueden ver los dispositivos USB de este equipo", "", "Reiniciar el equipo"},
};

constexpr SentenceRow kAccessSentences[] = {
    {kernelDriver, good,
     "El controlador de vídeo del sistema ({uvcvideo}) gestiona la cámara, como es normal",
     "Recuerda sus límites, y a veces su posición, sin volver a preguntárselos.",
     "Se mueve aunque otro programa muestre su imagen"},
    {noDriver, good, "Ningún controlador del sistema tiene la cámara; se usa directamente por USB", "", ""},
    {claimedByProgram, fault, "Otro programa se ha quedado con el control de la cámara ({usbfs})",
     "Ciérrelo, o desenchufe la cámara y vuelva a enchufarla.", "La maneja por USB"},
    {otherDriver, fault, "Un controlador que no es de vídeo tiene la cámara: {controlador}",
     "Con él no se puede mover. No es un programa que se pueda cerrar: quien administra el equipo tiene que "
     "quitar ese controlador y volver a enchufar la cámara.",
     ""},
    {unknownDriver, warning, "Un controlador desconocido gestiona la cámara: {controlador}", "",
     "No es el de vídeo del sistema, pero la ofrece como vídeo: nada, si se mueve"},
    {fileOpens, good, "Este usuario puede abrir {/dev/video0}", "", ""},
    {videoFileDenied, fault, "Este usuario no tiene permiso para abrir {/dev/video0}",
     "Inicie la sesión sentado ante este equipo, no a distancia, o añada el usuario al grupo «video» y "
     "vuelva "
     "a iniciar la sesión.",
     ""},
    {usbFileDenied, fault, "Este usuario no tiene permiso para abrir {/dev/bus/usb/001/004}",
     "Falta la regla de permisos (udev) de la cámara: reinstale el programa, desenchufe la cámara y vuelva a "
     "enchufarla.",
     ""},
    {fileBusy, fault, "Otro programa tiene ocupado {/dev/video0}", "Ciérrelo y compruebe de nuevo.", ""},
    {fileUnopened, fault, "No se puede abrir {/dev/video0}", PLUG_IN_AGAIN, ""},
    {noFile, fault, "El controlador no ofrece ningún fichero para usar la cámara",
     "Desenchufe la cámara y vuelva a enchufarla; si sigue igual, reinicie el equipo.", ""},
    {programs, information, "Programas que tienen abierta la cámara: {programa (proceso 4711)}", "{…}",
     "«Recibiendo imagen»: la está viendo"},
    {programsHarmless, information, "No impiden moverla.", "",
     "Debajo de los programas, con el controlador de vídeo del sistema"},
    {noPrograms, information, "Ningún programa tiene abierta la imagen de la cámara", "{…}", ""},
    {programsUnseen, information, "No se pueden ver los programas de otros usuarios; puede haber alguno más.",
     "", "Debajo de los programas: un usuario corriente no puede ver los de los demás"},
    {answersSlowly, warning, "La cámara contesta despacio: hasta {700} milisegundos para leer una posición",
     "Conéctela directamente al equipo, sin concentradores ni alargadores USB.",
     "Medio segundo o más (si la posición la dice el sistema de memoria no se nota; sí al probar una orden)"},
    {answersTooLate, warning, "La cámara tarda demasiado en contestar: más de {2000} milisegundos",
     "No se le ha preguntado nada más. Conéctela directamente al equipo, sin concentradores ni alargadores "
     "USB.",
     "Ese tiempo es para leer una posición; para leer sus límites, cuatro veces más. Comprobar de nuevo"},
    {goneMeanwhile, fault, "La cámara se ha desconectado durante la comprobación",
     "Compruebe el cable USB en los dos extremos.", ""},
    {openDenied, fault, "El sistema no ha permitido abrir la cámara", "", ""},
    {openBusy, fault, "Otro programa o controlador tiene ocupada la cámara",
     "Cierre los programas que usan la cámara y compruebe de nuevo.", ""},
    {openFailed, fault, "No se ha podido abrir la cámara", PLUG_IN_AGAIN, ""},
    {accessUnknown, information, "El sistema no dice cómo se llega a la cámara", "", ""},
};

constexpr SentenceRow kControlSentences[] = {
    {position, good, "{Giro}: ahora {3600 (1,0°)}", "{…}",
     "Lo que la cámara acaba de contestar. Es un dato, y no «Bien», si falta su rango o hay algo que no es "
     "normal"},
    {positionFromSystem, information, "{Giro}: {3600 (1,0°)}, según el sistema", "{…}",
     "Lo ha dado el controlador del sistema, que puede recordarlo"},
    {positionUnknown, information, "{Giro}: no se sabe su valor actual", "{…}", ""},
    {limits, information,
     "De {-612000 (-170,0°)} a {612000 (170,0°)}, paso {3600 (1,0°)}, predeterminado {0 (0,0°)}.", "",
     "Debajo del valor actual"},
    {limitsWithoutRange, information,
     "Mínimo y máximo desconocidos, paso {3600 (1,0°)}, predeterminado {desconocido}.", "", "Lo mismo"},
    {limitsUnknown, information, "No se saben sus límites.", "", "Lo mismo"},
    {notOffered, fault, "La cámara no ofrece este control",
     "Puede ser otra versión de la cámara, o estar en un modo que no deja moverla.", "Consultar su menú"},
    {notAsked, information, "No se ha podido preguntar a la cámara", "", "Más arriba se dice por qué"},
    {notSettable, fault, "La cámara dice que este control no se puede cambiar", "",
     "Rechaza órdenes: mirar si está bloqueada en su menú"},
    {positionOutside, warning, "{Giro}: el valor actual, {612001 (170,0°)}, está fuera de su rango",
     "Elija una escena o use el mando de la cámara y compruebe de nuevo.", "La cámara se contradice"},
    {defaultOutside, warning, "{Giro}: el valor predeterminado, {612001 (170,0°)}, está fuera de su rango",
     "", "La cámara se contradice: nada; anotarlo"},
    {resolutionTooSmall, warning, "{Giro}: el paso es {0}",
     "Una cámara sana da un paso mayor que cero. El programa pide las posiciones sin redondear.",
     "Nada; anotarlo"},
    {rangeReversed, fault, "{Giro}: el mínimo es mayor que el máximo",
     "Con ese rango ninguna posición es válida. Reinicie la cámara; si sigue igual, necesita servicio "
     "técnico.",
     "Toda orden la lleva a un extremo, y el programa no lo nota"},
    {rangeEmpty, fault, "{Giro}: el rango está vacío, así que no puede moverse", "",
     "Lo mismo: reiniciarla; si sigue, servicio técnico"},
    {limitsRefused, fault,
     "La cámara rechaza alguna de las lecturas de sus límites; con el controlador del sistema el control no "
     "se puede usar",
     RESTART "; si sigue igual, necesita una actualización o servicio técnico.",
     "El controlador del sistema los lee todos juntos; si falta uno, para él no hay control: no se mueve"},
    {neededRequestRefused, fault, "La cámara no contesta a {GET_CUR (valor actual)}", "Rechaza la petición.",
     "GET_CUR: no dice su posición, y los botones, el menú **Cámara** y **Añadir** cierran el programa **sin "
     "aviso**; con el controlador del sistema tampoco se puede girar. GET_INFO, solo sin ese controlador: el "
     "control no se puede usar; una escena avisa y cierra el programa, los botones lo cierran sin aviso. "
     "Quitarle la corriente"},
    {requestRefused, warning, "La cámara no contesta a {GET_MIN (mínimo)}", "Rechaza la petición.",
     "Solo sin controlador del sistema: se mueve, pero el programa no sabe sus límites, su paso o su valor "
     "predeterminado. Actualizar la cámara"},
    {neededRequestFailed, fault, "Ha fallado la petición {GET_CUR (valor actual)}",
     "La respuesta está incompleta o el sistema no la deja pasar.",
     "Otro cable u otro puerto; si sigue, actualizar la cámara"},
    {requestFailed, warning, "Ha fallado la petición {GET_MIN (mínimo)}",
     "La respuesta está incompleta o el sistema no la deja pasar.", "Lo mismo"},
    {requestUnanswered, fault, "La cámara no ha contestado a tiempo a {GET_CUR (valor actual)}",
     "No se le ha preguntado nada más. " RESTART ".", "Está colgada"},
    {requestGone, fault, "La cámara se ha desconectado al preguntarle {GET_CUR (valor actual)}",
     "Compruebe el cable USB.", ""},
};

constexpr SentenceRow kStoreSentences[] = {
    {storeSummary, information, "{12 escenas} en {3 ficheros}, {2 centros}", "Carpeta {carpeta}", ""},
    {room, good, "{Centro / Aula}: {4 escenas}", "", ""},
    {roomEmpty, information, "{Centro / Aula}: sin escenas", "", ""},
    {centreEmpty, information, "{Centro}: sin aulas", "", ""},
    {noStore, information, "Todavía no hay escenas guardadas",
     "El programa creará la carpeta al arrancar: {carpeta}", ""},
    {noDocuments, fault, "Este usuario no tiene carpeta de documentos",
     "El programa no puede arrancar sin ella.", ""},
    {fileFatal, fault, "{Centro / Aula}: fichero dañado o de otro programa; cierra el programa al arrancar",
     "Mueva este fichero a otra carpeta: {fichero}", "Se cierra sin mensaje"},
    {nameOfDots, fault, "Un fichero cuyo nombre son solo puntos cierra el programa al arrancar",
     "Bórrelo o cámbiele el nombre: {fichero}", "Lo mismo"},
    {fileEmpty, warning, "{Centro / Aula}: el fichero está vacío", FILE_SHOWN_EMPTY, ""},
    {fileWithoutScenes, warning, "{Centro / Aula}: el fichero no contiene escenas que se puedan leer",
     FILE_SHOWN_EMPTY, ""},
    {fileTooLarge, warning, "{Centro / Aula}: el fichero es demasiado grande para contener escenas",
     FILE_SHOWN_EMPTY, ""},
    {notAFile, warning, "{Centro / Aula}: no es un fichero, sino una carpeta u otra cosa", FILE_SHOWN_EMPTY,
     ""},
    {fileDenied, warning, "{Centro / Aula}: este usuario no tiene permiso para leer el fichero",
     FILE_SHOWN_EMPTY, "Devolver los permisos al usuario **antes** de guardar en esa aula"},
    {fileIsDanglingLink, warning, "{Centro / Aula}: es un enlace que no lleva a ningún fichero",
     FILE_SHOWN_EMPTY, ""},
    {fileUnreadable, warning, "{Centro / Aula}: el disco no deja leer el fichero (error {5} del sistema)",
     FILE_SHOWN_EMPTY, ""},
    {fileHidden, warning,
     "{Centro / Aula}: otro fichero lleva el nombre de la misma aula, y este no se muestra",
     "{fichero} — Contiene {2 escenas}.",
     "El nombre del aula acaba en el primer punto. El programa lee todos los ficheros, pero muestra uno: el "
     "que la siguiente vez que se guarde se sobrescribe. Cambiar el nombre de este"},
    {fileHiddenUnreadable, warning,
     "{Centro / Aula}: otro fichero lleva el nombre de la misma aula, y este no se muestra",
     "{fichero} — No se puede leer.", "Lo mismo"},
    {folderUnlisted, warning, "No se puede ver lo que hay en una carpeta de escenas",
     "{carpeta} — El programa la toma por vacía.",
     "El centro sale sin aulas: revisar los permisos de la carpeta"},
};

constexpr std::array<SentencePart, 6> kTable{{{"frase", kVerdicts},
                                              {"orden", kTrialSentences},
                                              {"cámaras", kCameraSentences},
                                              {"acceso", kAccessSentences},
                                              {"controles", kControlSentences},
                                              {"escenas", kStoreSentences}}};

constexpr bool hasEachOnce() {
    std::array<int, kSentences> rows{};
    for (const SentencePart &part : kTable)
        for (const SentenceRow &row : part.rows) ++rows[static_cast<std::size_t>(row.sentence)];
    for (const int count : rows)
        if (count != 1) return false;
    return true;
}
static_assert(hasEachOnce());

}  // namespace

std::span<const SentencePart> sentenceTable() {
    return kTable;
}

}  // namespace selfcheck
