"""Numbers, as formats of media write them."""


class Bits:
    """Bits in a row; each method gives the row back."""

    def __init__(self):
        self.text = ""

    def put(self, value, count):
        self.text += format(value, f"0{count}b") if count else ""
        assert count == 0 or value >> count == 0
        return self

    def ue(self, value):
        """Exponential Golomb code."""
        digits = format(value + 1, "b")
        self.text += "0" * (len(digits) - 1) + digits
        return self

    def se(self, value):
        return self.ue(2 * value - 1 if value > 0 else -2 * value)

    def bytes(self):
        """Filled up with zeros."""
        text = self.text + "0" * (-len(self.text) % 8)
        return bytes(int(text[i : i + 8], 2) for i in range(0, len(text), 8))

    def ended(self):
        """With the bit that ends a unit of H.264."""
        return Bits().put(0, 0)._with(self.text + "1").bytes()

    def _with(self, text):
        self.text = text
        return self
