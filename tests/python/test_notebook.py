"""The notebook runs from top to bottom, and shows what it says."""

import pathlib

import pytest

nbformat = pytest.importorskip("nbformat")
nbclient = pytest.importorskip("nbclient")
pytest.importorskip("ipykernel")

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples"


def outputs(cell, kind):
    return "".join(output.get("data", {}).get(kind, output.get("text", ""))
                   for output in cell.get("outputs", ()))


def test_the_notebook_runs(tmp_path, monkeypatch):
    monkeypatch.setenv("ZOL_SAMPLES", str(EXAMPLES / "documents"))
    monkeypatch.setenv("IPYTHONDIR", str(tmp_path))
    notebook = nbformat.read(EXAMPLES / "notebook" / "colors.ipynb", as_version=4)
    assert not any(cell.get("outputs") for cell in notebook.cells), "it is kept without outputs"
    nbclient.NotebookClient(notebook, timeout=120, kernel_name="python3",
                            resources={"metadata": {"path": str(tmp_path)}}).execute()
    code = [cell for cell in notebook.cells if cell.cell_type == "code"]
    html = "".join(outputs(cell, "text/html") for cell in code)
    assert html.count("background:#") > 10 and "<polyline" in html and "<table" in html
    text = "".join(outputs(cell, "text/plain") for cell in code)
    assert "at least 0 and at most 150 is allowed" in text and "Lightness L*." in text
    assert "<CieLab" in text
