"""What the calls that replace the task file's content tell: whether the bytes stood before, and how long it took."""

import statistics

from expectation import decode, encode
from program import uses
from tables import print_heading, print_row

WRITERS = ("start", "save", "update", "delete")


def many_tasks(count):
    return encode([
        {"id": f"{{{number}}}", "title": f"Tarea número {number}", "description": f"Detalle de la tarea {number}",
         "category": "Trabajo", "dateLimit": "05-03-2099", "urgency": "Media"} for number in range(count)])


def writing(calls):
    """The opening that truncates, the first and the last write and the close; nothing if it is not once done so."""
    written = [[calls[number] for number in numbers] for use, numbers in uses(calls) if use == "write"]
    writes = [call for call in written[0] if call.kind == "write"] if len(written) == 1 else []
    return (written[0][0], writes[0], writes[-1], written[0][-1]) if writes else None


def late_bytes(program, operation):
    """What is wrong when the bytes to write are built only after the file has been truncated."""
    content = many_tasks(1000)
    if operation == "start":
        content = encode([task | {"id": ""} for task in decode(content)])
    made = writing(program.run(operation, content).calls)
    if not made:
        return [f"{operation}: the file is not opened for writing and written to once"]
    opening, first, _, _ = made
    grown = first.memory - opening.memory
    late = grown > len(content) // 2
    return [f"{operation}: {grown} bytes are taken between truncating the file and writing to it"] if late else []


def measure(program):
    """Prints how long the file is not whole while a task is saved: medians in microseconds. Returns the result."""
    print_heading("Tasks", "Bytes", "Saves", "Opening", "Opened to last byte", "Opening to last byte",
                  "Opening to closed")
    for count in (10, 1000, 10000):
        content = many_tasks(count)
        saves = [writing(program.run("save", content, on_disk=True).calls) for _ in range(15)]
        spans = [[opening.ended - opening.begun, last.ended - opening.ended, last.ended - opening.begun,
                  close.ended - opening.begun] for opening, _, last, close in saves]
        print_row(count, saves[0][2].asked, len(saves),
                  *[f"{statistics.median(span) / 1000:.0f}" for span in zip(*spans)])
    return 0
