"""A small screen reader, a process of its own: answers questions about the program and keeps what it hears.

Reads one request a line and answers each with one line, both JSON. Runs with the Python that Debian's
GObject bindings belong to."""

import json
import sys
import threading

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

EVENTS = ["object:state-changed:focused", "object:state-changed:selected", "object:state-changed:showing"]
EVENTS += ["object:property-change:accessible-name"]


def children(node):
    return [node.get_child_at_index(index) for index in range(node.get_child_count())]


def described(node):
    states = {state.value_nick for state in node.get_state_set().get_states()}
    return {
        "role": node.get_role_name(),
        "name": node.get_name(),
        "description": node.get_description(),
        "states": sorted(states & {"focused", "selected", "showing", "modal", "is-default", "sensitive"}),
    }


class ScreenReader:
    def __init__(self):
        self.heard = []
        self.listener = Atspi.EventListener.new(self.hear)
        for event in EVENTS:
            self.listener.register(event)

    def hear(self, event):
        try:
            what = {"role": event.source.get_role_name(), "name": event.source.get_name()}
        except GLib.Error:
            what = {"role": "gone", "name": ""}
        self.heard.append({"event": event.type, "value": event.detail1, **what})

    def program(self):
        for application in children(Atspi.get_desktop(0)):
            if application is not None and application.get_name() == "vantrel":
                return application
        raise LookupError("the program is not there")

    def find(self, role, name, node=None):
        """The first with that role whose name begins like this; the insides of tables are not searched."""
        node = node or self.program()
        if node.get_role_name() == role and node.get_name().startswith(name):
            return node
        if node.get_role_name() == "table":
            return None
        for child in children(node):
            found = self.find(role, name, child) if child is not None else None
            if found is not None:
                return found
        return None

    def found(self, role, name):
        node = self.find(role, name)
        if node is None:
            raise LookupError(f"no {role} named {name}")
        return node

    # Requests.

    def is_there(self, role, name):
        return self.find(role, name) is not None

    def describe(self, role, name):
        return described(self.found(role, name))

    def inside(self, role, name):
        """Everything inside it, in one flat list."""
        all_of_it = []
        rest = children(self.found(role, name))
        while rest:
            node = rest.pop(0)
            all_of_it.append(described(node))
            rest = children(node) + rest
        return all_of_it

    def ancestors(self, role, name):
        node = self.found(role, name)
        roles = []
        while node is not None:
            roles.append(node.get_role_name())
            node = node.get_parent()
        return roles

    def shape(self, name):
        table = self.found("table", name).get_table_iface()
        titles = [table.get_column_description(column) for column in range(table.get_n_columns())]
        return {"rows": table.get_n_rows(), "titles": titles, "selected": table.get_selected_rows()}

    def row(self, name, row):
        table = self.found("table", name).get_table_iface()
        return [table.get_accessible_at(row, column).get_name() for column in range(table.get_n_columns())]

    def cell(self, name, row, column):
        node = self.found("table", name).get_table_iface().get_accessible_at(row, column)
        place = node.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
        return {**described(node), "place": [place.x, place.y, place.width, place.height]}

    def select_row(self, name, row):
        return self.found("table", name).get_table_iface().add_row_selection(row)

    def press(self, role, name):
        action = self.found(role, name).get_action_iface()
        return action.do_action(0)

    def press_cell(self, name, row):
        cell = self.found("table", name).get_table_iface().get_accessible_at(row, 0)
        return cell.get_action_iface().do_action(0)

    def key_binding(self, role, name):
        return self.found(role, name).get_action_iface().get_key_binding(0)

    def events(self):
        heard, self.heard = self.heard, []
        return heard

    def answer(self, line):
        request = json.loads(line)
        try:
            answer = {"answer": getattr(self, request[0])(*request[1:])}
        except (GLib.Error, LookupError, AttributeError) as error:
            answer = {"error": f"{type(error).__name__}: {error}"}
        print(json.dumps(answer), flush=True)


def main():
    Atspi.init()
    reader = ScreenReader()
    loop = GLib.MainLoop()

    def read():
        for line in sys.stdin:
            GLib.idle_add(lambda line=line: reader.answer(line))
        GLib.idle_add(loop.quit)

    threading.Thread(target=read, daemon=True).start()
    print(json.dumps({"answer": "ready"}), flush=True)
    loop.run()


if __name__ == "__main__":
    main()
