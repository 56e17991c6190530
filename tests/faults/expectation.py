"""What each operation does with the task file, step by step, and what it tells and shows: the faults' yardstick.

A fresh id is random; "?" stands for each of its digits.
"""

import errno
import json
import os
from dataclasses import dataclass
from datetime import datetime, timedelta, timezone

FRESH_ID = "{????????-????-????-????-????????????}"
# At midnight before it, which is not yet over and no more than two days away, today as well as in a minute.
DUE = (datetime.now(timezone.utc) + timedelta(days=2)).strftime("%d-%m-%Y")
REPEATED = {"open", "read", "write", "close"}  # calls that are made again when a signal interrupts them

WRITTEN = {"title": "Comprar piñón", "description": "Medio kilo", "category": "Trabajo", "urgency": "Alta"}
CHANGED_TITLE = "Regar el jardín"
READING, WRITING = "Failed to open file for reading:", "Failed to open file for writing:"
CREATING, SAVING = "Hubo un error al crear el archivo:", "Error al abrir el archivo:"


class Killed(Exception):
    """The program has been killed."""


@dataclass
class Fault:
    """What becomes of one call: of which kind, in which use of the file, after how many bytes of this use."""

    use: int = -1
    kind: str = ""
    what: str = ""
    argument: int = 0
    done: int = 0
    size: int = 0

    def kills(self):
        return self.what in ("before", "after", "amid")

    def fails(self, *kinds):
        repeated = self.argument == errno.EINTR and self.kind in REPEATED
        return self.what == "fail" and self.kind in kinds and not repeated

    def written(self, size):
        """How many of so many bytes reach the file, once it has been opened."""
        if self.kind == "write":
            if self.what == "short" or (self.what == "fail" and not self.fails("write")):
                return size
            return self.done + {"after": self.size, "amid": self.argument, "full": self.argument}.get(self.what, 0)
        return 0 if self.kills() and self.kind in ("open", "fstat", "seek") else size


def encode(tasks):
    if not tasks:
        return b"[\n]\n"
    return json.dumps(tasks, ensure_ascii=False, indent=4, sort_keys=True).encode() + b"\n"


def decode(content):
    try:
        tasks = json.loads(content)
    except ValueError:
        return []
    return tasks if isinstance(tasks, list) else []


def size_text(size):
    units = ["B", "KB", "MB", "GB", "TB"]
    while size >= 1024 and len(units) > 1:
        size, units = size / 1024, units[1:]
    return f"{size:.2f} {units[0]}"


def has_id(task):
    return isinstance(task.get("id"), str) and task["id"] != ""


def alike(expected, actual):
    """Whether they are the same but for the digits of fresh ids."""
    if expected is None or actual is None:
        return expected is actual
    return len(expected) == len(actual) and all(a in (b, ord("?")) for a, b in zip(expected, actual))


class TaskFile:
    """The file, used once for each method called; one use of it meets the fault."""

    def __init__(self, content):
        self.content = content
        self.uses = []
        self.fault = Fault()

    def begin(self, use):
        self.uses.append(use)
        return self.fault if self.fault.use == len(self.uses) - 1 else Fault()

    def exists(self):
        fault = self.begin("look")
        if fault.kills():
            raise Killed
        return self.content is not None and not fault.fails("access", "stat")

    def size(self):
        return len(self.content) if self.exists() else 0

    def read(self, use="read"):
        """The tasks, and why the file could not be opened."""
        fault = self.begin(use)
        if fault.kills():
            raise Killed
        if self.content is None or fault.fails("open"):
            return [], os.strerror(fault.argument if fault.fails("open") else errno.ENOENT)
        return decode(self.content[:fault.done] if fault.fails("read") else self.content), None

    def write(self, content):
        """Why the file could not be opened."""
        fault = self.begin("write")
        if fault.fails("open"):
            return os.strerror(fault.argument)
        if fault.kind != "open" or fault.what != "before":
            self.content = content[:fault.written(len(content))]
        if fault.kills():
            raise Killed
        return None


class Window:
    """What the user sees, with an operation for each that the program knows."""

    def __init__(self, content):
        self.file = TaskFile(content)
        self.told = []
        self.state = {"rows": [], "advice": False, "count": "", "size": "", "selection": False, "form": ["", ""],
                      "panel": "", "page": "tasks"}

    def tell(self, *what):
        self.told.append(list(what))

    def report(self, line, where, text, error):
        self.tell("critical line", f'{line} "{error}"')
        self.tell(where, "Error", text + error)

    def list(self, tasks):
        self.state["rows"] = [task.get("title", "") for task in tasks]

    def repair(self):
        if not self.file.exists():
            return
        tasks, error = self.file.read()
        if error:
            self.tell("critical line", f'No se pudo abrir rmc.json para reparar ids: "{error}"')
        repaired = [task if has_id(task) else task | {"id": FRESH_ID} for task in tasks]
        if repaired == tasks:
            return
        error = self.file.write(encode(repaired))
        if error:
            self.tell("critical line", f'No se pudo abrir rmc.json para guardar los ids reparados: "{error}"')
        else:
            self.tell("info line", "rmc.json: se repararon ids faltantes en tareas antiguas.")

    def load(self):
        tasks, error = self.file.read() if self.file.exists() else ([], "absent")
        self.state["advice"] = bool(error)
        if not error:
            self.list(tasks)
        elif error != "absent":
            self.report(READING, "critical box", "Error al cargar el dato: ", error)

    def show_figures(self, count_prefix="Tareas guardadas: ", size_prefix="Tamaño de almacenamiento ocupado: "):
        self.state["count"] = count_prefix + str(len(self.file.read()[0]))
        self.state["size"] = size_prefix + size_text(self.file.size())

    def start(self):
        self.repair()
        self.load()
        self.show_figures("", "")

    def refill(self, choose, text):
        if not self.file.exists():
            self.list([])
            return
        tasks, error = self.file.read()
        if error:
            self.report(READING, "critical box", text, error)
        else:
            self.list(choose(tasks))

    def order(self):
        self.refill(lambda tasks: sorted(tasks, key=lambda task: task["title"].encode("utf-16-be")),
                    "Error el cargar el dato: ")

    def search(self):
        self.refill(lambda tasks: [task for task in tasks if "a" in task["title"].lower()],
                    "Error al cargar los datos: ")

    def details(self):
        self.state["selection"] = True
        tasks, error = self.file.read()
        if error:
            self.report(READING, "critical box", "Failed to open file for reading: ", error)
            self.state["advice"] = True
        elif tasks:
            self.state["panel"] = tasks[0]["title"]
        else:
            self.tell("warning box", "Error", "Task details not found.")

    def before_save(self):
        self.state |= {"page": "new task", "form": [WRITTEN["title"], WRITTEN["description"]]}

    def save(self):
        tasks, error = [], None
        if self.file.exists():
            tasks, error = self.file.read()
            if error:
                self.report(SAVING, "critical box", "Error al abrir el archivo: ", error)
                return
        else:
            self.state["advice"] = True
            error = self.file.write(b"")
            if error:
                self.report(CREATING, "critical box", "Hubo un error al crear el archivo: ", error)
                return
        tasks.append(WRITTEN | {"id": FRESH_ID, "dateLimit": "05-03-2031"})
        error = self.file.write(encode(tasks))
        if error:
            self.report(SAVING, "critical box", "Error al abrir el archivo: ", error)
            self.state["advice"] = True
            return
        self.list(tasks)
        self.state |= {"form": ["", ""], "advice": False, "page": "tasks"}
        self.tell("tray", "Tarea agregada", "Una nueva tarea ha sido agregada.")
        self.show_figures()

    def before_update(self):
        self.state |= {"selection": True, "panel": CHANGED_TITLE}

    def update(self):
        tasks, error = self.file.read("read and write")
        if error:
            self.report(READING, "tray", "Error el cargar los datos: ", error)
            return
        for task in tasks[:1]:
            kept = {key: task[key] for key in ("id", "description", "category", "dateLimit", "urgency")}
            tasks[0] = kept | {"title": CHANGED_TITLE}
        error = self.file.write(encode(tasks))
        if error:
            self.report(WRITING, "tray", "Failed to open file for writing: ", error)
            return
        self.state["selection"] = False
        self.tell("tray", "Tarea actualizada", f"La tarea '{CHANGED_TITLE}' ha sido actualizada.")
        self.statistics()

    def before_delete(self):
        self.state |= {"selection": True, "panel": decode(self.file.content)[0]["title"]}

    def delete(self):
        self.tell("question", "Finalizar Tarea", "¿Está seguro de que desea finalizar y eliminar esta tarea?")
        self.state["selection"] = False
        tasks, error = self.file.read("read and write")
        if error:
            self.report(READING, "critical box", "Failed to open file for reading: ", error)
            return
        title = tasks[0]["title"] if tasks else ""
        error = self.file.write(encode(tasks[1:]))
        if error:
            self.report(WRITING, "critical box", "Failed to open file for writing: ", error)
            return
        self.tell("tray", "Tarea eliminada", f"La tarea '{title}' ha sido eliminada.")
        self.statistics()
        self.show_figures()

    def reminders(self):
        tasks, error = self.file.read()
        if error:
            self.tell("critical line", f'{READING} "{error}"')
        due = [task["title"] for task in tasks if task["dateLimit"] == DUE]
        if due:
            heading = f"Hay {len(due)} tarea(s) por vencer dentro de 2 días:\n"
            self.tell("tray", "Tareas por vencer", heading + ", ".join(due))

    def statistics(self):
        self.load()
        self.show_figures()


def expect(operation, content, fault=Fault()):
    """The window after the operation met the fault, and whether the program was killed by it."""
    window = Window(content)
    if operation != "start":
        window.start()
        getattr(window, f"before_{operation}", lambda: None)()
    window.file.uses.clear()
    window.file.fault = fault
    try:
        getattr(window, operation)()
    except Killed:
        return window, True
    return window, False
