"""The package stands on PYTHONPATH; the sample documents beside it."""

import pathlib

import pytest

SAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples" / "documents"


@pytest.fixture
def sample():
    """Opens a sample document by its name."""
    import zol

    return lambda name: zol.open(SAMPLES / f"{name}.zol")


@pytest.fixture
def documents():
    return sorted(SAMPLES.glob("*.zol"))
