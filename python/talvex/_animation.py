"""Driving an avatar from an animation sample stream: a mapper built once for
one framework turns each unit into the avatar's blendshape and texture
weights and joint matrices, kept in an AnimationComponents object."""

from ._core import Error, function
from ._stream import SampleStream, _unit

# Framework types tried, in this order, for a URN the library has no table of.
TYPES = ("ANIMATION_FACE", "ANIMATION_BODY", "ANIMATION_HAND", "ANIMATION_LANDMARK", "ANIMATION_TEXTURE")
# Unit types whose values each kind of framework input takes (1 weight, 2 vector, 4 matrix).
UNITS_OF = {1: (1, 4), 2: (3,), 4: (2,)}


def framework(arf, urn, type=None):
    """The built-in framework of `urn`, else the one made from the component
    `arf` drives directly with it (of `type`, or the first type that has one)."""
    try:
        return function("sorvane_arf_AnimationFramework_create")(urn, 0)
    except Error:
        pass
    for t in ([type] if type else TYPES):
        made = function("sorvane_arf_AnimationFramework_tryCreate")(arf, t, urn, 0)
        if made is not None:
            return made
    raise Error(f"No framework {urn} in the library or the document")


class Animator:
    """One mapper for `urn` over `arf`, and the avatar's live state.

        with talvex.Arf.load("avatar.arf.json") as arf, talvex.Animator(arf, URN) as animator:
            for timestamp, kind in animator.feed(stream_bytes):
                print(timestamp, animator.joints(1))

    The document may be closed once the animator is made: the mapper and the
    state keep nothing of it."""

    def __init__(self, arf, urn, type=None, little_endian=False):
        self.urn = urn
        self._framework = framework(arf, urn, type)
        self._mapper = function("sorvane_arf_AnimationMapper_create")(arf, self._framework)
        self.components = function("sorvane_arf_AnimationComponents_create")(arf)
        location = self._framework.get_default_location()
        self.value_type = self._framework.get_input_value_type(*location)
        self._stream = SampleStream.create(little_endian)

    def close(self):
        for handle in (self._stream, self.components, self._mapper, self._framework):
            handle.delete()

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.close()

    def takes(self, unit_type):
        """Whether units of this type (1 blendshape, 2 joint, 3 landmark, 4
        texture) hold values of the framework's kind."""
        return unit_type in UNITS_OF.get(self.value_type, ())

    def update(self, sample):
        """Applies one sample (any sample class) to the state."""
        with _unit(sample) as unit:
            self._mapper._call("updateComponents_sample", self.components, unit)

    def feed(self, data):
        """Feeds stream bytes (any chunk of the stream); yields (timestamp,
        unit type) after each whole unit of the framework's kind is applied.
        Other units are decoded and passed over."""
        self._stream.feed(data)
        for header, sample in self._stream:
            try:
                kind = header.unit_type
                if self.takes(kind):
                    self.update(sample)
                    yield header.timestamp, kind
            finally:
                sample.delete()
                header.delete()

    def weights(self, set_id):
        """The weights of a blendshape set by ascending shape id, as {id: weight}."""
        c = self.components
        return dict(zip(c.get_blendshape_ids(set_id), c.get_blendshape_weights(set_id)))

    def texture_weights(self, set_id):
        c = self.components
        return dict(zip(c.get_texture_ids(set_id), c.get_texture_weights(set_id)))

    def joints(self, skeleton_id):
        """Each joint's row-major matrix as {joint id: [16 floats]}."""
        c = self.components
        flat = list(c.get_joint_transforms(skeleton_id))
        ids = c.get_joint_ids(skeleton_id)
        return {j: flat[16 * k:16 * k + 16] for k, j in enumerate(ids)}

    def describe(self):
        """The mapper's graph as JSON text: one item per driven target."""
        with self._mapper._call("buildDescription") as tree:
            return tree.to_json_string()


def animate(arf, data, urn, chunk=4096, type=None, little_endian=False):
    """Drives `arf` with a whole stream given as bytes, fed in chunks; yields
    (timestamp, unit type, animator) after each unit applied."""
    with Animator(arf, urn, type, little_endian) as animator:
        for i in range(0, len(data), max(chunk, 1)):
            for timestamp, kind in animator.feed(data[i:i + chunk]):
                yield timestamp, kind, animator
