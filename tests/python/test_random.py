"""Anything in any order: no crash, and no proxy that shows what it never stood for."""

import gc
import random

import pytest

import zol

# What a program may be told. Anything else, and a sanitizer's complaint, is a fault.
TOLD = (ReferenceError, ValueError, TypeError, BufferError, IndexError, zol.ZolError)


class Player:
    def __init__(self, seed, documents):
        self.chance = random.Random(seed)
        self.documents = [zol.open(path) for path in documents]
        self.known = list(self.documents)
        self.views = []

    def any(self):
        return self.chance.choice(self.known)

    def keep(self, value):
        if isinstance(value, zol.List):
            value = value[self.chance.randrange(len(value))] if len(value) else None
        if isinstance(value, zol.Object):
            self.known.append(value)

    def get(self):
        shown = self.any()
        self.keep(getattr(shown, self.chance.choice(list(shown.attributes()))))

    def set(self):
        shown, other = self.any(), self.any()
        name = self.chance.choice(list(shown.attributes()))
        value = self.chance.choice((None, 1, 0.5, "x", other, [other], "2024-02-29T12:00:00Z",
                                    other.copy() if not isinstance(other, zol.Document) else None))
        setattr(shown, name, value)
        self.keep(getattr(shown, name))

    def change_list(self):
        shown = self.any()
        names = [name for name, one in shown.attributes().items() if one.is_list]
        if not names:
            return
        values = getattr(shown, self.chance.choice(names))
        at = self.chance.randrange(-2, len(values) + 2)
        way = self.chance.randrange(6)
        if way == 0:
            self.keep(values.append(self.any()))
        elif way == 1:
            values.pop(at)
        elif way == 2:
            values[at] = self.any()
        elif way == 3:
            self.keep(values.insert(at, values[0]))
        elif way == 4:
            del values[at:at + 2]
        else:
            self.keep(values.add())

    def move(self):
        """What is alike may stand wherever its like stood."""
        shown = self.any()
        alike = [one for one in self.known if type(one) is type(shown) and one.parent is not None]
        if alike:
            parent = self.chance.choice(alike).parent
            for name, one in parent.attributes().items():
                if one.is_list and self.chance.random() < 0.5:
                    self.keep(getattr(parent, name).append(shown))

    def look(self):
        shown = self.any()
        if isinstance(shown, zol.ColorSpace):
            view = shown.coordinates if self.chance.random() < 0.5 or not hasattr(
                shown, "values") else shown.values
            if view is not None:
                self.views.append((view, view.copy()))
        repr(shown), shown.path, shown._repr_html_()

    def forget(self):
        self.chance.shuffle(self.known)
        del self.known[200:], self.views[10:]
        if len([one for one in self.known if not one.is_removed]) < 20:
            self.known += self.documents
        gc.collect(0)

    def check(self):
        for one in self.known:
            if not one.is_removed and one.parent is not None:
                assert not one.parent.is_removed and one.path.startswith(one.parent.path)
        for document in self.documents:
            try:
                again = zol.loads(document.dumps(exact=True), best_effort=[])
                assert len(again.colors) == len(document.colors)
            except zol.SaveError:
                pass
            document.table("ColorSpace")
            document.spectra()


@pytest.mark.parametrize("seed", range(20))
def test_anything_in_any_order(seed, documents):
    player = Player(seed, [path for path in documents if path.stat().st_size < 150_000])
    moves = [player.get] * 6 + [player.set, player.change_list, player.move, player.look] * 2
    told = 0
    for turn in range(3000):
        try:
            player.chance.choice(moves)()
        except TOLD:
            told += 1
        if turn % 50 == 0:
            player.forget()
        if turn % 500 == 0:
            player.check()
    assert told < 2500
    player.views.clear()
    for document in player.documents:
        document.close()
    assert all(one.is_removed or one.parent is not None or one not in player.documents
               for one in player.known)
