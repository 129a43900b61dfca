"""The page to browse slices with, in a real browser."""

import base64
import json
import re
import time

import numpy as np
import pytest

import cxc
from cxc.cli import main
from cxc.page import write_page

GREY, WHITE = [212, 212, 212], [255, 255, 255]


@pytest.fixture(scope="module")
def browser(tmp_path_factory):
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service

    options = webdriver.ChromeOptions()
    for flag in (
        "--headless=new --no-sandbox --disable-gpu --disable-quic --no-first-run "
        "--disable-background-networking --disable-component-update --disable-sync "
        f"--window-size=1280,800 --user-data-dir={tmp_path_factory.mktemp('browser')}"
    ).split():
        options.add_argument(flag)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    options.binary_location = "/usr/bin/chromium"
    driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
    yield driver
    driver.quit()


@pytest.fixture(autouse=True)
def no_complaint_and_no_request(request):
    """Whatever a test did to a page: it told of no error and asked nobody for anything."""
    if "browser" not in request.fixturenames:
        yield
        return
    driver = request.getfixturevalue("browser")
    size_of(driver, 1280, 800)
    driver.get("about:blank")
    driver.get_log("browser")
    driver.get_log("performance")
    yield
    assert driver.get_log("browser") == []
    messages = [json.loads(entry["message"])["message"] for entry in driver.get_log("performance")]
    asked = [
        message["params"]["request"]["url"]
        for message in messages
        if message["method"] == "Network.requestWillBeSent"
    ]
    assert asked and all(re.fullmatch(r"file:.*/page\.html", url) for url in asked), asked


def size_of(browser, width, height):
    browser.execute_cdp_cmd(
        "Emulation.setDeviceMetricsOverride",
        {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False},
    )


def show(browser, tmp_path, source, **options):
    path = tmp_path / "page.html"
    write_page(source, path, **options)
    browser.get(path.as_uri())


def get(browser, name):
    return browser.find_element("id", name)


def text(browser, name):
    return get(browser, name).text


def pixel(browser, row, column):
    script = """return Array.from(document.getElementById("map").getContext("2d")
        .getImageData(arguments[1], arguments[0], 1, 1).data)"""
    *colour, opacity = browser.execute_script(script, row, column)
    assert opacity == 255
    return colour


def press(browser, text):
    """The one button of that text."""
    (button,) = [b for b in browser.find_elements("tag name", "button") if b.text == text]
    button.click()
    return button


def enter(browser, name, value):
    from selenium.webdriver.common.keys import Keys

    box = get(browser, name)
    box.send_keys(Keys.CONTROL, "a")
    box.send_keys(str(value), Keys.TAB)


def keys(browser, *pressed):
    """Into whatever has the focus."""
    from selenium.webdriver.common.action_chains import ActionChains

    for key in pressed:
        ActionChains(browser).send_keys(key).perform()


def at_cell(browser, row, column, shape=(3, 3)):
    """The pointer over a cell of the heat map."""
    from selenium.webdriver.common.action_chains import ActionChains

    picture = get(browser, "map")
    width, height = picture.size["width"], picture.size["height"]
    right = int((column + 0.5) / shape[1] * width - width / 2)
    down = int((row + 0.5) / shape[0] * height - height / 2)
    return ActionChains(browser).move_to_element_with_offset(picture, right, down)


def lines(browser):
    """Row, column, value and colour of every line, from the weakest to the strongest."""
    script = """return [...document.querySelectorAll("#ring .line")].map(line =>
        [Number(line.dataset.row), Number(line.dataset.column), Number(line.dataset.value),
         getComputedStyle(line).stroke])"""
    return [tuple(line) for line in browser.execute_script(script)]


def listed(browser):
    rows = browser.find_elements("css selector", "#list tr")
    return [tuple(cell.text for cell in row.find_elements("tag name", "td"))
            for row in rows if row.is_displayed()]  # fmt: skip


def names(browser, kind):
    script = "return [...document.querySelectorAll(arguments[0])].map(name => name.textContent)"
    return browser.execute_script(script, f"#names .{kind}")


NAMES = ["Fp1", "Cz", "O2", "Pz", "T7"]


@pytest.fixture()
def dataset():
    """Three sensors, four slices; one pair rises, one directed value is no number."""
    values = np.zeros((4, 3, 3))
    values[:, 0, 1] = [0.0, 0.25, 0.5, 1.0]
    values[2, 2, 1] = np.nan
    return cxc.Dataset.from_array(
        values, sampling_rate=2.0, latency=(1.0, 2.5), band=(8.0, 13.0), sensors=NAMES[:3],
        name="a </script> & <b>{{band}}", note="How </script>",
    )  # fmt: skip


def network(slices=6, scale=1.0, name="net", sensors=5):
    """Pair (a, b) of slice t has (a + b / 10 + t / 100) / 10, symmetric; 1 with itself."""
    a, b = np.meshgrid(np.arange(sensors), np.arange(sensors), indexing="ij")
    low, high = np.minimum(a, b), np.maximum(a, b)
    values = (low + high / 10 + np.arange(slices)[:, None, None] / 100) / 10 * scale
    values[:, np.arange(sensors), np.arange(sensors)] = 1.0
    labels = NAMES[:sensors] if sensors <= 5 else [f"E{k}" for k in range(sensors)]
    return cxc.Dataset.from_array(values, sampling_rate=1.0, name=name, sensors=labels)


def test_the_slider_browses_the_slices(browser, tmp_path, dataset):
    from selenium.webdriver.common.keys import Keys

    show(browser, tmp_path, dataset)
    assert browser.title == "a </script> & <b>{{band}}"
    assert browser.find_element("tag name", "h1").text == "a </script> & <b>{{band}}"
    assert text(browser, "time") == "slice 0, at 1 s"
    first = pixel(browser, 0, 1)
    slider = get(browser, "slice")
    slider.send_keys(Keys.ARROW_RIGHT)
    assert text(browser, "time") == "slice 1, at 1.5 s"
    assert slider.get_attribute("aria-valuetext") == "slice 1, at 1.5 s"
    assert pixel(browser, 0, 1) != first
    slider.send_keys(Keys.END)
    assert text(browser, "time") == "slice 3, at 2.5 s"
    assert sum(pixel(browser, 0, 1)) < 100 < sum(first)  # strong is dark
    assert pixel(browser, 1, 0) == first


def test_buttons_and_keys_step_through_the_slices(browser, tmp_path, dataset):
    from selenium.webdriver.common.keys import Keys

    show(browser, tmp_path, dataset)
    for name, wanted in (("next", 1), ("next", 2), ("back", 1), ("back", 0), ("back", 0)):
        get(browser, name).click()
        assert text(browser, "time").startswith(f"slice {wanted},")
    keys(browser, Keys.ARROW_RIGHT, Keys.ARROW_RIGHT, Keys.ARROW_LEFT)
    assert text(browser, "time").startswith("slice 1,")


def test_grey_is_no_number_and_a_sensor_with_itself(browser, tmp_path, dataset):
    show(browser, tmp_path, dataset)
    assert pixel(browser, 1, 1) == GREY != pixel(browser, 2, 1)
    get(browser, "next").click()
    get(browser, "next").click()
    assert pixel(browser, 2, 1) == GREY


def test_pointing_at_a_pair_reads_it(browser, tmp_path, dataset):
    show(browser, tmp_path, dataset)
    get(browser, "next").click()
    get(browser, "next").click()
    at_cell(browser, 0, 1).perform()
    assert text(browser, "pair") == "Fp1 \u2192 Cz: 0.5"
    assert names(browser, "named") == ["Fp1", "Cz"]
    at_cell(browser, 2, 1).perform()
    assert text(browser, "pair") == "O2 \u2192 Cz: no number"
    at_cell(browser, 0, 1).move_by_offset(0, -200).perform()
    assert text(browser, "pair") == "None"


def test_a_click_shows_the_course(browser, tmp_path, dataset):
    from selenium.webdriver.common.action_chains import ActionChains
    from selenium.webdriver.common.keys import Keys

    show(browser, tmp_path, dataset)
    course = get(browser, "course")
    assert not course.is_displayed()
    at_cell(browser, 0, 1).click().perform()
    assert course.is_displayed()
    assert course.get_attribute("aria-label") == (
        "Course of Fp1 \u2192 Cz over 4 slices, from 0 to 1"
    )
    path = course.find_element("css selector", ".course").get_attribute("d")
    points = np.array(re.findall(r"([\d.]+) ([\d.]+)", path), dtype=float)
    # Heights are those of the values, upwards.
    np.testing.assert_allclose(
        (points[0, 1] - points[:, 1]) / (points[0, 1] - points[3, 1]), [0, 0.25, 0.5, 1], atol=0.01
    )
    assert (np.diff(points[:, 0]) > 0).all()

    def marked():
        line = course.find_element("css selector", ".now")
        return line.get_attribute("data-slice"), float(line.get_attribute("x1"))

    assert marked() == ("0", points[0, 0])
    get(browser, "next").click()
    assert marked() == ("1", pytest.approx(points[1, 0], abs=0.1))
    # A click at its right end goes to the last slice.
    ActionChains(browser).move_to_element_with_offset(
        course, course.size["width"] // 2 - 3, 0
    ).click().perform()
    assert text(browser, "time").startswith("slice 3,")
    assert course.find_element("css selector", ".spot").get_attribute("data-value") == "1"
    keys(browser, Keys.ESCAPE)
    assert not course.is_displayed()


def test_a_gap_in_the_course_stays_one(browser, tmp_path, dataset):
    show(browser, tmp_path, dataset)
    at_cell(browser, 2, 1).click().perform()
    path = get(browser, "course").find_element("css selector", ".course").get_attribute("d")
    assert path.count("M") == 2 and path.endswith("h.01")  # the last slice is a dot


def test_the_keyboard_goes_from_pair_to_pair(browser, tmp_path, dataset):
    from selenium.webdriver.common.keys import Keys

    show(browser, tmp_path, dataset)
    get(browser, "map").send_keys(Keys.ARROW_DOWN)
    assert text(browser, "pair") == "Fp1 \u2192 Fp1: 0"
    keys(browser, Keys.ARROW_RIGHT, Keys.ARROW_DOWN, Keys.ARROW_DOWN, Keys.ARROW_DOWN)
    assert text(browser, "pair") == "O2 \u2192 Cz: 0"
    keys(browser, Keys.ARROW_LEFT, Keys.ARROW_UP)
    assert text(browser, "pair") == "Cz \u2192 Fp1: 0"
    assert text(browser, "time").startswith("slice 0,")


def test_every_control_is_reached_by_the_tab_key_and_has_a_name(browser, tmp_path):
    from selenium.webdriver.common.keys import Keys

    package = cxc.Package(network(name="task"), network(2, name="rest"))
    show(browser, tmp_path, package)
    press(browser, "Both")
    reached = {}
    for _ in range(60):  # from that button to the end, and round again
        keys(browser, Keys.TAB)
        element = browser.switch_to.active_element
        if element.tag_name == "body":
            continue
        if element.id in reached:
            break
        reached[element.id] = element.accessible_name
    controls = browser.find_elements("css selector", "button, input, select, summary, #map")
    shown = [e for e in controls if e.is_displayed() and e.is_enabled()]
    assert {e.id for e in shown} <= set(reached)
    assert all(reached.values()), reached
    for name in ("ring", "scale"):
        assert get(browser, name).accessible_name


def test_playing_goes_round(browser, tmp_path, dataset):
    from selenium.webdriver.support.ui import Select, WebDriverWait

    show(browser, tmp_path, dataset)
    button = get(browser, "play")
    button.click()
    assert button.text == "Pause"
    assert get(browser, "time").get_attribute("aria-live") == "off"
    Select(get(browser, "speed")).select_by_value("10")
    for wanted in ("slice 3", "slice 0"):
        WebDriverWait(browser, 20, 0.02).until(lambda b: text(b, "time").startswith(wanted))
    button.click()
    assert button.text == "Play"
    assert get(browser, "time").get_attribute("aria-live") == "polite"
    stands = text(browser, "time")
    time.sleep(0.5)
    assert text(browser, "time") == stands


def test_one_slice_cannot_be_played(browser, tmp_path):
    show(browser, tmp_path, network(1))
    assert not any(get(browser, name).is_enabled() for name in ("play", "back", "next", "slice"))
    at_cell(browser, 0, 1, (5, 5)).click().perform()
    assert get(browser, "course").find_element("css selector", ".spot").is_displayed()


def test_differences_have_white_in_the_middle(browser, tmp_path):
    values = np.array([[[0.0, -0.5, 0.0], [0.25, 0.0, 0.0], [0.0, 0.0, 0.0]]])
    show(browser, tmp_path, cxc.Dataset.from_array(values))
    assert [text(browser, name) for name in ("high", "middle", "low")] == ["0.5", "0", "-0.5"]
    assert min(pixel(browser, 0, 2)) > 240
    assert pixel(browser, 0, 1)[2] > pixel(browser, 0, 1)[0]
    assert pixel(browser, 1, 0)[0] > pixel(browser, 1, 0)[2]
    at_cell(browser, 0, 2).perform()
    assert text(browser, "pair").endswith(": 0")  # and not a remainder of the steps


def test_limits_hold_for_all_slices(browser, tmp_path, dataset):
    show(browser, tmp_path, dataset, limits=(0.0, 0.25))
    assert text(browser, "high") == "\u2265 0.25"
    with pytest.raises(ValueError, match="the lower one first"):
        write_page(dataset, tmp_path / "b.html", limits=(1.0, 1.0))


def test_the_circle_joins_the_strongest_pairs(browser, tmp_path):
    show(browser, tmp_path, network())
    assert not get(browser, "ring").is_displayed() and get(browser, "map").is_displayed()
    press(browser, "Circle")
    assert get(browser, "ring").is_displayed() and not get(browser, "map").is_displayed()
    enter(browser, "lines", 3)
    assert [line[:2] for line in lines(browser)] == [(2, 3), (2, 4), (3, 4)]
    assert lines(browser)[2][2] == 0.34
    assert text(browser, "count") == "Lines: the 3 strongest of 10 pairs above 0"
    # The colours of lines are those of the cells.
    for row, column, _, colour in lines(browser):
        assert colour == f"rgb({', '.join(map(str, pixel(browser, row, column)))})"
    enter(browser, "lines", 99)
    assert len(lines(browser)) == 10
    assert get(browser, "lines").get_attribute("value") == "10"
    get(browser, "next").click()
    assert lines(browser)[-1][2] == 0.341
    press(browser, "Both")
    assert get(browser, "ring").is_displayed() and get(browser, "map").is_displayed()
    press(browser, "Heat map")
    assert not get(browser, "ring").is_displayed()


def test_sensors_stand_as_in_the_pictures(browser, tmp_path):
    from cxc.plot_circle import angles

    show(browser, tmp_path, network())
    press(browser, "Circle")
    places = browser.execute_script("""return [...document.querySelectorAll("#ring .sensor")].map(
        sensor => [Number(sensor.dataset.sensor), sensor.textContent,
                   ...["cx", "cy"].map(a => Number(sensor.firstChild.getAttribute(a)))])""")
    assert {(sensor, name) for sensor, name, _, _ in places} == set(enumerate(NAMES))
    for sensor, _, x, y in places:
        angle, radius = angles(NAMES)[sensor], np.hypot(x, y)
        assert (x / radius, -y / radius) == pytest.approx((np.cos(angle), np.sin(angle)), abs=1e-4)


def test_a_line_is_pointed_at_and_clicked(browser, tmp_path):
    from selenium.webdriver.common.action_chains import ActionChains

    show(browser, tmp_path, network())
    press(browser, "Circle")
    enter(browser, "lines", 3)
    script = """const hit = document.querySelector('#ring .hit[data-row="3"]');
        const at = hit.getPointAtLength(hit.getTotalLength() * 0.3).matrixTransform(
            hit.getScreenCTM()), box = hit.ownerSVGElement.getBoundingClientRect();
        return [at.x - box.x - box.width / 2, at.y - box.y - box.height / 2]"""
    right, down = browser.execute_script(script)
    chain = ActionChains(browser).move_to_element_with_offset(
        get(browser, "ring"), int(right), int(down)
    )
    chain.perform()
    assert text(browser, "pair") == "Pz \u2013 T7: 0.34"
    assert len(browser.find_elements("css selector", ".line.far")) == 2
    chain.click().perform()
    assert get(browser, "course").is_displayed()
    assert len(browser.find_elements("css selector", ".halo")) == 1


def test_a_cell_that_is_pointed_at_is_marked_in_the_circle(browser, tmp_path):
    show(browser, tmp_path, network())
    press(browser, "Both")
    at_cell(browser, 4, 2, (5, 5)).perform()
    marked = [e.text for e in browser.find_elements("css selector", "#ring text.named")]
    assert sorted(marked) == ["O2", "T7"]
    assert len(browser.find_elements("css selector", ".halo")) == 1
    at_cell(browser, 0, 0, (5, 5)).move_by_offset(0, -100).perform()
    assert not browser.find_elements("css selector", ".halo")


def test_of_two_directions_the_stronger_one_has_the_line(browser, tmp_path):
    values = np.zeros((1, 3, 3))
    values[0, 1, 0], values[0, 0, 1], values[0, 0, 2] = 0.8, 0.2, np.nan
    values[0, 2, 0] = 0.1
    show(browser, tmp_path, cxc.Dataset.from_array(values, sensors=NAMES[:3]))
    press(browser, "Circle")
    assert [line[:3] for line in lines(browser)] == [(2, 0, 0.1), (1, 0, 0.8)]
    assert text(browser, "count").endswith("of two directions the stronger one")
    assert listed(browser) == [("Cz \u2192 Fp1", "0.800"), ("O2 \u2192 Fp1", "0.100")]


def test_the_threshold_empties_cells_and_lines(browser, tmp_path):
    from selenium.webdriver.common.keys import Keys

    show(browser, tmp_path, network())
    press(browser, "Both")
    enter(browser, "thresholdNumber", 0.14)
    assert [line[:2] for line in lines(browser)] == [(1, 4), (2, 3), (2, 4), (3, 4)]
    assert text(browser, "count") == "Lines: all 4 pairs at or above 0.14"
    assert pixel(browser, 1, 3) == WHITE != pixel(browser, 1, 4)
    assert pixel(browser, 2, 2) == GREY
    assert len(listed(browser)) == 4
    bar = """const bar = document.getElementById("scale").getContext("2d");
        return Array.from(bar.getImageData(0, 0, 1, 256).data)"""
    colours = browser.execute_script(bar)
    assert colours[-4:-1] == WHITE != colours[:3]
    # The slider goes on from there, and its end hides everything.
    slider = get(browser, "threshold")
    slider.send_keys(Keys.ARROW_RIGHT)
    assert 0.14 < float(get(browser, "thresholdNumber").get_attribute("value")) < 0.16
    slider.send_keys(Keys.END)
    assert lines(browser) == [] and listed(browser) == []
    assert get(browser, "none").is_displayed()
    assert text(browser, "count").startswith("No pair is at or above")
    slider.send_keys(Keys.HOME)
    assert pixel(browser, 1, 3) != WHITE and len(lines(browser)) == 10
    enter(browser, "thresholdNumber", "")
    assert get(browser, "thresholdNumber").get_attribute("value") == "0"


def test_the_strongest_pairs_are_listed_and_can_be_chosen(browser, tmp_path):
    show(browser, tmp_path, network())
    assert listed(browser)[:2] == [("Pz \u2013 T7", "0.340"), ("O2 \u2013 T7", "0.240")]
    button = press(browser, "O2 \u2013 T7")
    assert text(browser, "pair") == "O2 \u2013 T7: 0.24"
    assert button.get_attribute("aria-pressed") == "true"


def test_axes_name_the_sensors(browser, tmp_path):
    show(browser, tmp_path, network())
    assert names(browser, "row") == names(browser, "column") == NAMES
    show(browser, tmp_path, network(1, sensors=120))
    for kind in ("row", "column"):
        shown = names(browser, kind)
        step = int(shown[1][1:])
        assert 1 < step < 10 and shown == [f"E{k}" for k in range(0, 120, step)]
    at_cell(browser, 1, 2, (120, 120)).perform()
    assert names(browser, "named") == ["E1", "E2"]


def test_labels_do_not_overlap_and_fit(browser, tmp_path):
    script = """const boxes = [...document.querySelectorAll("#names .row, #names .column")].map(
            name => name.getBoundingClientRect());
        const plot = document.getElementById("heat").getBoundingClientRect();
        return [boxes.some((a, i) => boxes.some((b, j) => i < j && a.left < b.right - 1 &&
                    b.left < a.right - 1 && a.top < b.bottom - 3 && b.top < a.bottom - 3)),
                boxes.some(b => b.left < plot.left - 1 || b.bottom > plot.bottom + 1),
                document.documentElement.scrollWidth > document.documentElement.clientWidth]"""
    for width, height in ((1280, 800), (800, 600)):
        size_of(browser, width, height)
        for sensors in (5, 30, 120):
            show(browser, tmp_path, network(1, sensors=sensors))
            for view in ("Heat map", "Both"):
                press(browser, view)
                assert browser.execute_script(script) == [False] * 3, (width, sensors)


@pytest.mark.parametrize("size", [(1280, 800), (800, 600)])
def test_the_picture_is_on_the_screen(browser, tmp_path, size):
    size_of(browser, *size)
    show(browser, tmp_path, cxc.Package(network(name="task"), network(1)))
    for view, picture in (("Heat map", "heat"), ("Circle", "circle"), ("Both", "heat")):
        press(browser, view)
        box = get(browser, picture).rect
        assert box["x"] >= 0 and box["x"] + box["width"] <= size[0]
        assert box["y"] + box["height"] <= size[1] and min(box["width"], box["height"]) >= 260


def test_other_sensors_across_have_no_circle(browser, tmp_path):
    part = network(sensors=20).select(rows=range(2), columns=range(5, 12))
    show(browser, tmp_path, part)
    assert not get(browser, "circleButton").is_enabled()
    assert not get(browser, "bothButton").is_enabled()
    assert names(browser, "row") == ["E0", "E1"]
    at_cell(browser, 1, 6, (2, 7)).perform()
    assert text(browser, "pair") == "E1 \u2192 E11: 0.21"
    assert GREY not in [pixel(browser, 0, 0), pixel(browser, 1, 1)]
    assert len(listed(browser)) == 10


def test_as_many_other_sensors_across_are_no_circle_either(browser, tmp_path):
    show(browser, tmp_path, network(sensors=20).select(rows=[0, 1], columns=[5, 6]))
    assert not get(browser, "circleButton").is_enabled()
    assert (names(browser, "row"), names(browser, "column")) == (["E0", "E1"], ["E5", "E6"])
    assert GREY not in [pixel(browser, 0, 0), pixel(browser, 1, 1)]
    assert len(listed(browser)) == 4


def test_a_package_shows_its_classes(browser, tmp_path):
    from selenium.webdriver.common.keys import Keys

    package = cxc.Package(network(name="task"), network(1, scale=0.5, name="rest"))
    package.name = "S01"
    package.combine("subtract")
    show(browser, tmp_path, package)
    assert browser.title == "S01"
    get(browser, "next").click()
    press(browser, "Both")
    at_cell(browser, 3, 4, (5, 5)).click().perform()
    assert text(browser, "pair") == "Pz \u2013 T7: 0.341"
    assert text(browser, "high") == "0.4" and text(browser, "low") == "0"
    strong = pixel(browser, 3, 4)
    press(browser, "Control")
    assert text(browser, "time") == "slice 0, at 0 s" and not get(browser, "play").is_enabled()
    assert text(browser, "pair") == "Pz \u2013 T7: 0.17"
    assert text(browser, "high") == "0.4" and sum(pixel(browser, 3, 4)) > sum(strong)
    # Colours of its own, when they are asked for.
    get(browser, "same").click()
    assert text(browser, "high") == "0.2"
    get(browser, "same").send_keys(Keys.SPACE)
    assert text(browser, "high") == "0.4"
    press(browser, "Act-Ctl")
    assert text(browser, "high") == "0.2" and text(browser, "low") == "-0.2"
    assert text(browser, "pair") == "Pz \u2013 T7: 0.17"
    assert pixel(browser, 3, 4)[0] > pixel(browser, 3, 4)[2]  # red
    assert press(browser, "Active").get_attribute("aria-pressed") == "true"


def test_thresholds_of_differences_are_their_own(browser, tmp_path):
    package = cxc.Package(network(), network(1, scale=0.5))
    package.combine("subtract")
    show(browser, tmp_path, package, difference_limits=(-1, 1))
    enter(browser, "thresholdNumber", 0.1)
    press(browser, "Act-Ctl")
    assert get(browser, "thresholdNumber").get_attribute("value") == "0"
    assert text(browser, "high") == "1"
    press(browser, "Control")
    assert get(browser, "thresholdNumber").get_attribute("value") == "0.1"


def test_a_group_is_a_list_of_datasets(browser, tmp_path):
    from selenium.webdriver.support.ui import Select

    held = [network(scale=0.2 * k, name=f"subject {k}") for k in range(1, 6)]
    held.insert(2, None)
    held.append(network(sensors=3, name="smaller"))
    group = cxc.Group(held)
    group.name = "all"
    show(browser, tmp_path, group)
    choice = Select(get(browser, "dataset"))
    assert [o.text for o in choice.options] == [f"subject {k}" for k in range(1, 6)] + ["smaller"]
    at_cell(browser, 3, 4, (5, 5)).click().perform()
    assert text(browser, "pair") == "Pz \u2013 T7: 0.068"
    choice.select_by_visible_text("subject 5")
    assert text(browser, "pair") == "Pz \u2013 T7: 0.34"
    assert text(browser, "high") == "0.4"
    choice.select_by_visible_text("smaller")  # without the pair that was chosen
    assert text(browser, "pair") == "None"
    assert names(browser, "row") == NAMES[:3]


HOSTILE = ["</script><b>", '"quote"', "'s'", "\u202eab\u2069", "\u05e9\u05dc\u05d5\u05dd"]


def test_names_of_a_file_stay_text(browser, tmp_path):
    values = network().to_array()
    values[:, 0, 4] = 0.9
    first = cxc.Dataset.from_array(values, sensors=HOSTILE, name="<img src=x onerror=alert(1)>")
    first.note += "\n</pre><script>alert(1)</script>\x07"
    group = cxc.Group([first, network(name='"]}</script>\u202e')])
    group.name = "<i>&amp;\u202e"
    show(browser, tmp_path, group)
    assert browser.title == "<i>&amp;\\u202e"
    assert text(browser, "datasets").split("\n") == [
        "<img src=x onerror=alert(1)>", '"]}</script>\\u202e'
    ]  # fmt: skip
    spelt = HOSTILE[:3] + ["\\u202eab\\u2069"] + HOSTILE[4:]
    assert names(browser, "row") == spelt
    press(browser, "Both")
    at_cell(browser, 0, 4, (5, 5)).click().perform()
    parts = browser.execute_script(
        "return [...document.getElementById('pair').childNodes].map(n => n.textContent)"
    )
    assert parts == [spelt[0], " \u2192 ", spelt[4], ": 0.9"]
    browser.find_element("tag name", "summary").click()
    assert "</pre><script>alert(1)</script>\\u0007" in text(browser, "note")
    assert not browser.find_elements("css selector", "img, b, i")
    assert len(browser.find_elements("tag name", "script")) == 2


def test_times_that_are_none_are_slices(browser, tmp_path):
    dataset = network()
    dataset.latency = (float("nan"), float("inf"))
    show(browser, tmp_path, dataset)
    assert text(browser, "time") == "slice 0"


def test_values_near_the_largest_number_are_read(browser, tmp_path):
    values = np.zeros((1, 2, 2))
    values[0, 0, 1], values[0, 1, 0] = -1.7e308, 1.7e308
    show(browser, tmp_path, cxc.Dataset.from_array(values))
    at_cell(browser, 1, 0, (2, 2)).click().perform()
    assert text(browser, "pair") == "2 \u2192 1: 1.7e+308"
    assert pixel(browser, 1, 0)[0] > pixel(browser, 1, 0)[2]
    assert pixel(browser, 0, 1)[2] > pixel(browser, 0, 1)[0]


def test_a_window_of_another_size_keeps_the_state(browser, tmp_path):
    show(browser, tmp_path, network())
    at_cell(browser, 3, 4, (5, 5)).click().perform()
    before = get(browser, "map").size["width"]
    size_of(browser, 800, 600)
    browser.execute_async_script("requestAnimationFrame(arguments[0])")
    assert get(browser, "map").size["width"] < before
    assert text(browser, "pair") == "Pz \u2013 T7: 0.34"


def test_it_prints_on_one_sheet_without_its_controls(browser, tmp_path):
    show(browser, tmp_path, network())
    press(browser, "Both")
    at_cell(browser, 3, 4, (5, 5)).click().perform()
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"media": "print"})
    shown = [name for name in ("play", "slice", "threshold", "map", "ring", "course", "time")
             if get(browser, name).is_displayed()]  # fmt: skip
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"media": ""})
    assert shown == ["map", "ring", "course", "time"]
    printed = base64.b64decode(browser.print_page())
    assert len(re.findall(rb"/Type\s*/Page\b", printed)) == 1


def test_nothing_but_its_own_script_may_run(tmp_path, dataset):
    path = tmp_path / "page.html"
    write_page(dataset, path)
    page = path.read_text()
    assert not re.search(r"https?:|src=|@import|url\(|<link", page)
    assert page.count("</script>") == 2
    policy = re.search(r'Content-Security-Policy" content="([^"]*)"', page)[1]
    assert policy.startswith("default-src 'none'") and "unsafe" not in policy


@pytest.mark.parametrize("scale", [1.0, 1e-300, 1e307])
def test_values_are_within_half_a_step(scale):
    from cxc.page import _stored

    values = np.random.default_rng(1).uniform(-1, 1, (3, 4, 4)) * scale
    stored, step = _stored(values, values.min(), values.max(), "u2")
    back = values.min() + stored.astype(float) * step
    assert np.abs(back / 2 - values / 2).max() <= step / 4 * 1.001 + 1e-15 * scale


def test_large_datasets_take_one_byte_a_value(tmp_path):
    path = tmp_path / "page.html"
    write_page(cxc.Dataset.from_array(np.random.default_rng(1).random((50, 300, 300))), path)
    assert path.stat().st_size < 1.4 * 50 * 300 * 300


def test_what_would_be_too_large_is_refused(tmp_path):
    dataset = cxc.Dataset.from_array(np.ones((500, 96, 96)))
    with pytest.raises(ValueError, match="46,080,000 values would make a page of 61 MB.*select"):
        write_page(cxc.Group([dataset] * 10), tmp_path / "a.html")
    assert not list(tmp_path.iterdir())


def test_what_cannot_be_shown_is_refused(tmp_path):
    with pytest.raises(ValueError, match="no finite value"):
        write_page(cxc.Dataset.from_array(np.full((1, 2, 2), np.nan)), tmp_path / "a.html")
    with pytest.raises(ValueError, match="holds no dataset"):
        write_page(cxc.Group([None]), tmp_path / "a.html")
    with pytest.raises(ValueError, match="holds no values"):
        write_page(cxc.Dataset(), tmp_path / "a.html")
    assert not list(tmp_path.iterdir())


def test_the_command_makes_the_page(tmp_path, dataset, capsys):
    source, out = str(tmp_path / "a.cxc"), str(tmp_path / "a.html")
    dataset.save(source)
    assert main(["page", source, "-o", out]) == 0
    assert main(["page", source, "-o", out]) == 1
    assert "exists already" in capsys.readouterr().err
    assert main(["page", source, "-o", out, "--limits", "1", "0", "--force"]) == 1
    assert "the lower one first" in capsys.readouterr().err


def test_the_command_opens_packages_and_groups(browser, tmp_path, capsys):
    source, out = tmp_path / "a.cxc", tmp_path / "page.html"
    package = cxc.Package(network(name="task"), network(1, name="rest"))
    package.combine("subtract")
    package.save(source)
    assert main(["page", str(source), "-o", str(out), "--difference-limits", "-1", "1"]) == 0
    assert capsys.readouterr().out.endswith("page.html: 3 datasets\n")
    browser.get(out.as_uri())
    assert get(browser, "datasets").text.split("\n") == ["Active", "Control", "Act-Ctl"]
    cxc.Group([network()] * 5).save(source)
    assert main(["page", str(source), "-o", str(out), "--force"]) == 0
    browser.get(out.as_uri())
    assert len(get(browser, "dataset").find_elements("tag name", "option")) == 5
