#!/usr/bin/python3
"""The simulated edition by assistive technology alone (AT-SPI): from the start to the end, with what each part is
called, what it is, whether it can be used, and where the focus is after every dialog.

    journey.py FOLDER COMMAND...    runs COMMAND with FOLDER, which is emptied, and takes the store

Needs a session bus and a display of its own; run.sh makes both. Prints a line for each thing that it looked at.
"""

import os
import shutil
import subprocess
import sys
import time

import pyatspi

PATIENCE = 30  # seconds; a busy machine is slow, not wrong
TITLE = "Zelvoria. Control de cámara"
PREVIEW = "Vista previa de la cámara simulada"
NUDGES = ["Arriba", "Izquierda", "Derecha", "Abajo", "Acercar", "Alejar"]
ROWS = [
    ("Centro", "Añadir un centro", "Eliminar el centro"),
    ("Aula/Espacio", "Añadir un aula o espacio", "Eliminar el aula o espacio"),
    ("Escena", "Añadir una escena", "Eliminar la escena"),
]
ADD_ROOM, REMOVE_ROOM = ROWS[1][1:]


class Wrong(Exception):
    pass


def attempt(look):
    """What `look` returns; None when what it looked at has gone meanwhile."""
    try:
        return look()
    except Exception:  # the bus's own errors, of several kinds
        return None


def expect(what, look, wanted=True):
    """Waits until `look` returns `wanted`."""
    end = time.monotonic() + PATIENCE
    while (seen := attempt(look)) != wanted:
        if time.monotonic() > end:
            raise Wrong(f"{what}: {seen!r}, not {wanted!r}")
        time.sleep(0.1)
    print("ok  ", what if wanted is True else f"{what}: {wanted!r}", flush=True)


def has(thing, *states):
    return all(thing.getState().contains(getattr(pyatspi, f"STATE_{state.upper()}")) for state in states)


def below(thing):
    yield thing
    for child in thing:
        if child:
            yield from below(child)


class Program:
    """What a screen reader sees of the program."""

    def __init__(self, folder, *command):
        shutil.rmtree(folder, ignore_errors=True)
        self.command = [*command, folder]
        always = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        self.process = subprocess.Popen(self.command, env=always, stdout=subprocess.DEVNULL)

    def windows(self):
        desktop = pyatspi.Registry.getDesktop(0)
        return [w for app in desktop if app and app.get_process_id() == self.process.pid for w in app]

    def things(self, *roles):
        return [t for w in self.windows() for t in below(w) if t.getRoleName() in roles]

    def find(self, role, name):
        return next(t for t in self.things(role) if t.name == name)

    def is_usable(self, role, name):
        return has(self.find(role, name), "enabled", "sensitive", "showing")

    def picker(self, label):
        def labels(box):
            relations = box.getRelationSet()
            return [r.getTarget(0).name for r in relations if r.getRelationType() == pyatspi.RELATION_LABELLED_BY]

        return next(box for box in self.things("combo box") if label in labels(box))

    def entries(self, label):
        return [t.name for t in below(self.picker(label)) if t.getRoleName() == "list item"]

    def focused(self):
        things = [t for w in self.windows() if has(w, "active") for t in below(w) if has(t, "focused")]
        # Qt calls the panel focused that the focused button stands on.
        return [(t.getRoleName(), t.name) for t in things if t.getRoleName() != "panel"]

    def active(self):
        return [(w.getRoleName(), w.name) for w in self.windows() if has(w, "active")]

    def texts(self, role, name):
        """What is written in the window of that name."""
        return [t.name for t in below(self.find(role, name)) if t.getRoleName() == "label"]

    def act(self, action, role, name):
        def actions():
            offered = self.find(role, name).queryAction()
            return {offered.getName(i): i for i in range(offered.nActions)}

        expect(f"{action} {role} «{name}»", lambda: action in actions())
        # A command that opens a dialog, or ends the program, answers when that is over: nobody waits so long.
        attempt(lambda: self.find(role, name).queryAction().doAction(actions()[action]))

    def press(self, name):
        """Goes to the button and presses it, as somebody does who reads with the keyboard."""
        self.act("SetFocus", "push button", name)
        self.act("Press", "push button", name)

    def key(self, symbol):
        pyatspi.Registry.generateKeyboardEvent(symbol, None, pyatspi.KEY_SYM)


TAB, DOWN = 0xFF09, 0xFF54


def the_start(program):
    expect("active window", program.active, [("frame", TITLE)])
    expect("focus", program.focused, [("combo box", " Sin grupo")])
    expect("the preview is a window", lambda: bool(program.find("frame", PREVIEW)))


def other_starts(program):
    def status(*command):
        return subprocess.run(command, timeout=PATIENCE, stderr=subprocess.DEVNULL).returncode

    expect("status of a second start", lambda: status(*program.command), 0)
    expect("active window", program.active, [("frame", TITLE)])
    expect("status where no folder can be made", lambda: status(*program.command[:-1], "/proc/none"), 1)


def what_there_is(program):
    expect(
        "pictures",
        lambda: sorted(t.name for t in program.things("image")),
        [
            "Imagen de la cámara simulada",
            "Logotipo de KAV",
            "Logotipo de Zelvoria",
            "Orientación de la cámara vista desde arriba",
        ],
    )
    buttons = NUDGES + [name for row in ROWS for name in row[1:]]
    expect("buttons", lambda: sorted(t.name for t in program.things("push button")), sorted(buttons))
    for button in buttons:
        expect(f"«{button}» can be used", lambda: program.is_usable("push button", button))
        expect(f"«{button}» is described", lambda: bool(program.find("push button", button).description))
    for label, *_ in ROWS:
        expect(f"the picker «{label}» is described", lambda: bool(program.picker(label).description))
    expect("the position is read", lambda: program.texts("frame", PREVIEW)[0].startswith("Giro "))


def ask(program, button, question):
    """Presses `button` and looks at the prompt that it opens."""
    program.press(button)
    expect("active window", program.active, [("dialog", TITLE)])
    expect("focus", program.focused, [("text", question)])


def answered(program, button, focus):
    program.press(button)
    expect("active window", program.active, [("frame", TITLE)])
    expect("focus", program.focused, [("push button", focus)])


def add(program, button, question, name):
    ask(program, button, question)
    program.find("text", question).queryEditableText().setTextContents(name)
    answered(program, "OK", button)


def remove(program, button, question, focus):
    program.press(button)
    expect("active window", program.active, [("dialog", TITLE)])
    expect("focus", program.focused, [("push button", "Confirmar")])
    expect("question", lambda: question in program.texts("dialog", TITLE))
    answered(program, "Confirmar", focus)


def a_centre_a_room_a_scene(program):
    ask(program, "Añadir un centro", "Introduzca el nombre del centro")
    answered(program, "Cancelar", "Añadir un centro")
    add(program, "Añadir un centro", "Introduzca el nombre del centro", "Anexo")
    expect("a new centre", lambda: program.entries("Centro")[:2], [" Sin grupo", "Anexo"])

    program.act("SetFocus", "push button", "Alejar")
    expect("focus", program.focused, [("push button", "Alejar")])
    program.key(TAB)
    expect("focus", program.focused, [("combo box", " Sin grupo")])
    program.key(DOWN)
    expect("chosen by key", program.focused, [("combo box", "Anexo")])
    for label in ("Aula/Espacio", "Escena"):
        expect(f"the picker «{label}» cannot be used", lambda: not has(program.picker(label), "sensitive"))
    for button in (REMOVE_ROOM, "Añadir una escena", "Eliminar la escena"):
        expect(f"«{button}» cannot be used", lambda: not program.is_usable("push button", button))

    add(program, ADD_ROOM, "Introduzca el nombre del aula o espacio", "Taller")
    expect("«Añadir una escena» can be used", lambda: program.is_usable("push button", "Añadir una escena"))
    before = program.texts("frame", PREVIEW)[0]
    program.press("Derecha")
    expect("the camera has moved", lambda: program.texts("frame", PREVIEW)[0] != before)
    add(program, "Añadir una escena", "Introduzca el nombre de la escena", "Mesa")
    expect("the picker «Escena» shows", lambda: program.picker("Escena").name, "Mesa")

    # A button that can no longer be used hands the focus to its neighbour.
    remove(program, "Eliminar la escena", "¿Seguro que desea eliminar la escena?", "Añadir una escena")
    remove(program, REMOVE_ROOM, "¿Seguro que desea eliminar el aula o espacio?", ADD_ROOM)
    remove(program, "Eliminar el centro", "¿Seguro que desea eliminar el centro?", "Eliminar el centro")


def the_menu(program):
    program.act("Press", "menu item", "Acerca de…")
    expect("active window", program.active, [("dialog", "Versión 1.0")])
    expect("focus", program.focused, [("push button", "Aceptar")])
    answered(program, "Aceptar", "Eliminar el centro")
    program.act("Press", "menu item", "Salir")
    expect("the program has ended", lambda: program.process.poll() is not None)
    expect("its status", lambda: program.process.returncode, 0)


def main():
    program = Program(*sys.argv[1:])
    try:
        for part in (the_start, other_starts, what_there_is, a_centre_a_room_a_scene, the_menu):
            print(f"-- {part.__name__.replace('_', ' ')}", flush=True)
            part(program)
    except Wrong as wrong:
        print("FAIL", wrong, flush=True)
        return 1
    finally:
        program.process.kill()
    return 0


if __name__ == "__main__":
    sys.exit(main())
