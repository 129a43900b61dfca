"""The page with a slider, in a real browser."""

import re

import numpy as np
import pytest

import cxc
from cxc.cli import main
from cxc.page import write_page


@pytest.fixture(scope="module")
def browser(tmp_path_factory):
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service

    options = webdriver.ChromeOptions()
    for flag in (
        "--headless=new --no-sandbox --disable-gpu --disable-quic --no-first-run "
        "--disable-background-networking --disable-component-update --disable-sync "
        f"--window-size=1000,1000 --user-data-dir={tmp_path_factory.mktemp('browser')}"
    ).split():
        options.add_argument(flag)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    options.binary_location = "/usr/bin/chromium"
    driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
    yield driver
    driver.quit()


def show(browser, tmp_path, dataset, **options):
    path = tmp_path / "page.html"
    write_page(dataset, path, **options)
    browser.get(path.as_uri())
    return path


def text(browser, name):
    return browser.find_element("id", name).text


def pixel(browser, row, column):
    script = "return Array.from(ink.getImageData(arguments[1], arguments[0], 1, 1).data)"
    return browser.execute_script(script, row, column)


@pytest.fixture()
def dataset():
    values = np.zeros((4, 3, 3))
    values[:, 0, 1] = [0.0, 0.25, 0.5, 1.0]
    values[2, 2, 2] = np.nan
    return cxc.Dataset.from_array(
        values, sampling_rate=2.0, latency=(1.0, 2.5), band=(8.0, 13.0),
        name="a </script> & <b>{{band}}",
        note="How </script>\nSensors: 1 Fp1, 2 Cz, 3 O2",
    )  # fmt: skip


def test_the_slider_browses_the_slices(browser, tmp_path, dataset):
    from selenium.webdriver.common.keys import Keys

    show(browser, tmp_path, dataset)
    assert browser.title == "a </script> & <b>{{band}}"
    assert browser.find_element("tag name", "h1").text == "a </script> & <b>{{band}}"
    assert text(browser, "time") == "slice 0, at 1"
    first = pixel(browser, 0, 1)
    slider = browser.find_element("id", "slice")
    slider.send_keys(Keys.ARROW_RIGHT)
    assert text(browser, "time") == "slice 1, at 1.5"
    assert pixel(browser, 0, 1) != first
    slider.send_keys(Keys.END)
    assert text(browser, "time") == "slice 3, at 2.5"
    assert pixel(browser, 0, 1) == [253, 231, 37, 255]  # the last of the colours
    assert pixel(browser, 1, 1) == first
    assert not browser.get_log("browser")


def test_pointing_at_a_pair_reads_it(browser, tmp_path, dataset):
    from selenium.webdriver.common.action_chains import ActionChains
    from selenium.webdriver.common.keys import Keys

    show(browser, tmp_path, dataset)
    browser.find_element("id", "slice").send_keys(Keys.ARROW_RIGHT, Keys.ARROW_RIGHT)
    picture = browser.find_element("id", "map")
    third = picture.size["width"] // 3
    ActionChains(browser).move_to_element_with_offset(picture, 0, -third).perform()
    assert text(browser, "pair") == "Fp1 \u2192 Cz: 0.5"
    ActionChains(browser).move_to_element_with_offset(picture, third, third).perform()
    assert text(browser, "pair") == "O2 \u2192 O2: no number"
    assert pixel(browser, 2, 2) == [212, 212, 212, 255]


def test_playing_goes_round(browser, tmp_path, dataset):
    from selenium.webdriver.support.ui import WebDriverWait

    show(browser, tmp_path, dataset)
    button = browser.find_element("id", "play")
    button.click()
    assert button.text == "Pause"
    for wanted in ("slice 3", "slice 0"):
        WebDriverWait(browser, 20, 0.02).until(lambda b: text(b, "time").startswith(wanted))
    button.click()
    assert button.text == "Play"


def test_differences_have_white_in_the_middle(browser, tmp_path):
    values = np.array([[[0.0, -0.5], [0.25, 0.0]]])
    show(browser, tmp_path, cxc.Dataset.from_array(values))
    assert [text(browser, name) for name in ("high", "middle", "low")] == ["0.5", "0", "-0.5"]
    red, green, blue, _ = pixel(browser, 0, 0)
    assert min(red, green, blue) > 240
    assert pixel(browser, 0, 1)[2] > pixel(browser, 0, 1)[0]
    assert pixel(browser, 1, 0)[0] > pixel(browser, 1, 0)[2]


def test_limits_hold_for_all_slices(browser, tmp_path, dataset):
    show(browser, tmp_path, dataset, limits=(0.0, 0.25))
    assert text(browser, "high") == "0.25"
    with pytest.raises(ValueError, match="below the upper"):
        write_page(dataset, tmp_path / "b.html", limits=(1.0, 1.0))


def test_the_page_asks_nobody_for_anything(tmp_path, dataset):
    path = tmp_path / "page.html"
    write_page(dataset, path)
    page = path.read_text()
    assert not re.search(r"https?:|src=|@import|url\(|<link", page)
    assert page.count("</script>") == 2


@pytest.mark.parametrize("scale", [1.0, 1e-300, 1e307])
def test_values_are_within_half_a_step(tmp_path, scale):
    from cxc.page import _stored

    values = np.random.default_rng(1).uniform(-1, 1, (3, 4, 4)) * scale
    stored, kind, step = _stored(values, values.min(), values.max())
    assert kind == "u2"
    back = values.min() + stored.astype(float) * step
    assert np.abs(back / 2 - values / 2).max() <= step / 4 * 1.001 + 1e-15 * scale


def test_large_datasets_take_one_byte_a_value(tmp_path):
    path = tmp_path / "page.html"
    write_page(cxc.Dataset.from_array(np.random.default_rng(1).random((50, 300, 300))), path)
    assert path.stat().st_size < 1.4 * 50 * 300 * 300


def test_what_cannot_be_shown_is_refused(tmp_path):
    with pytest.raises(ValueError, match="no finite value"):
        write_page(cxc.Dataset.from_array(np.full((1, 2, 2), np.nan)), tmp_path / "a.html")
    assert not list(tmp_path.iterdir())


def test_the_command_makes_the_page(tmp_path, dataset, capsys):
    source, out = str(tmp_path / "a.cxc"), str(tmp_path / "a.html")
    dataset.save(source)
    assert main(["page", source, "-o", out]) == 0
    assert main(["page", source, "-o", out]) == 1
    assert "exists already" in capsys.readouterr().err
    assert main(["page", source, "-o", out, "--limits", "1", "0", "--force"]) == 1
    assert "below the upper" in capsys.readouterr().err
