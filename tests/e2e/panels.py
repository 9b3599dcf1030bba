"""What the two panels of the window show, read from its pixels."""

from session import settled, until

BLUE = (0, 0, 168)
ACTIVE = (0, 171, 171)
INACTIVE = (0, 77, 128)
BRIGHT_CYAN = (84, 255, 255)

ROW_HEIGHT = 20
FIRST_ROW = 52
BARS_ABOVE = 24
BARS_BELOW = 48


class Panel:
    """The geometry is in points of the window's content."""

    def __init__(self, session, side):
        self.session = session
        left_width = (session.width - 2) // 2
        self.x = 0 if side == "left" else left_width + 2
        self.width = left_width if side == "left" else session.width - left_width - 2
        self.y = BARS_ABOVE
        self.height = session.height - BARS_ABOVE - BARS_BELOW

    def _pixel(self, x, y):
        return self.session.screen.pixel(self.session.x + self.x + x, self.session.y + self.y + y)

    def _area(self, x, y, width, height):
        return self.session.screen.area(self.session.x + self.x + x, self.session.y + self.y + y, width, height)

    def visible_rows(self):
        return (self.height - 72) // ROW_HEIGHT

    def row_y(self, row):
        return FIRST_ROW + ROW_HEIGHT * row

    def cursor(self):
        """(row, "active" or "inactive") of the cursor among the visible rows, or None."""
        for row in range(self.visible_rows()):
            colour = self._pixel(7, self.row_y(row) + 1)
            if colour in (ACTIVE, INACTIVE):
                return row, "active" if colour == ACTIVE else "inactive"
        return None

    def has_row(self, row):
        """Whether there is a name in the row: every row but the cursor's has ink on blue, the cursor's has a bar."""
        if self._pixel(7, self.row_y(row) + 1) != BLUE:
            return True
        y = self.row_y(row)
        return any(self._pixel(x, line) != BLUE for x in range(10, 60) for line in range(y, y + ROW_HEIGHT))

    def rows(self):
        return sum(self.has_row(row) for row in range(self.visible_rows()))

    def name(self, row):
        return self._area(10, self.row_y(row), 200, ROW_HEIGHT)

    def names(self):
        return self._area(10, FIRST_ROW, 200, ROW_HEIGHT * self.visible_rows())

    def title(self):
        return self._area(60, 2, self.width - 120, 20)

    def header(self):
        return self._area(8, 26, self.width - 16, 22)

    def sizes(self):
        return self._area(self.width - 230, FIRST_ROW, 70, ROW_HEIGHT * self.visible_rows())

    def has_size(self, row):
        """Whether the row's folder shows its final total."""
        y = self.row_y(row)
        return any(
            self._pixel(x, line) == BRIGHT_CYAN
            for x in range(self.width - 230, self.width - 160)
            for line in range(y, y + ROW_HEIGHT)
        )

    # Waiting.

    def expect_cursor(self, row, kind):
        until(lambda: self.cursor() == (row, kind), f"the cursor is in row {row} and {kind}, not {self.cursor()}")

    def expect_rows(self, count):
        until(lambda: self.rows() == count, f"{count} rows, not {self.rows()}")

    def point_of(self, row):
        """A place in the row's name, in the window's content."""
        return self.x + 60, self.y + self.row_y(row) + 5


def left_and_right(session):
    return Panel(session, "left"), Panel(session, "right")


def settled_picture(panel):
    return settled(lambda: (panel.title(), panel.header(), panel.names()))
