"""What a thing on the screen must tell of itself, for those who only hear it."""

from assistant import SENSITIVE, states

# Hold others together, only adorn, or belong to the text that they scroll.
SILENT = {"filler", "panel", "frame", "image", "scroll bar"}


def is_silent(node, parents):
    role = node.get_role_name()
    # The list of an open combo box is told with the combo box.
    return role in SILENT or (role == "list" and parents and parents[-1].get_role_name() == "combo box")


def fault(node):
    """What is wrong with the words of a thing, or None."""
    name = node.get_name()
    if not name.strip():
        return "has no name"
    if name != name.strip():
        return "has a name with blanks around it"
    # Once something is chosen, it takes the place of the name.
    if node.get_role_name() == "combo box" and not node.get_description():
        return "has no description"
    return None


def step(node, parent):
    """One step of the path to a thing."""
    number = f" {node.get_index_in_parent()}" if parent else ""
    return f'{node.get_role_name()}{number} "{node.get_name()}"'


def path(node, parents):
    line = [*parents, node]
    return " / ".join(step(one, parent) for one, parent in zip(line, [None, *line]))


def faults(assistant):
    """A line on everything on the screen that can be used and does not tell what it is."""
    found = []
    for node, parents in assistant.showing():
        if not is_silent(node, parents) and states(node).contains(SENSITIVE):
            wrong = fault(node)
            if wrong:
                found.append(f"{node.get_role_name()} {wrong}: {path(node, parents)}")
    return found
