#!/usr/bin/python3
"""bgrkit view's page in a real browser, headless: the example airport's page
must draw every edge, apron and finding, hide a layer that is switched off,
show what a finding names, follow the zoom with its scale bar and not be blank.

    view_browser.py BGRTOOL BGRKIT EXAMPLES [--screenshot PNG]
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time

CREDIT = "© OpenStreetMap contributors, ODbL 1.0"


def fail(message):
    print("view_browser: FAILED: " + message, file=sys.stderr)
    sys.exit(1)


def expect(condition, message):
    if not condition:
        fail(message)


def wait_for(driver, script, timeout=10):
    end = time.time() + timeout
    while time.time() < end:
        value = driver.execute_script(script)
        if value:
            return value
        time.sleep(0.1)
    fail("timed out waiting for: " + script)


def main():
    args = sys.argv[1:]
    shot = None
    if "--screenshot" in args:
        at = args.index("--screenshot")
        shot = os.path.abspath(args[at + 1])
        del args[at:at + 2]
    bgrtool, bgrkit, examples = (os.path.abspath(a) for a in args)
    browser = shutil.which("chromium") or shutil.which("chromium-browser")
    driver_path = shutil.which("chromedriver") or "/usr/lib/chromium/chromedriver"
    if not browser or not os.path.exists(driver_path):
        print("view_browser: skipped: chromium and chromium-driver are not installed")
        return 0
    from selenium import webdriver
    from selenium.webdriver.chrome.options import Options
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.action_chains import ActionChains
    from selenium.webdriver.common.by import By

    work = tempfile.mkdtemp(prefix="bgrkit-view-")
    try:
        for name in ("LMML.BGR", "LMML.PLY"):
            shutil.copy(os.path.join(examples, name), work)
        tm = subprocess.run([bgrtool, "-tm", "LMML.BGR"], cwd=work, capture_output=True)
        expect(tm.returncode == 1, "bgrtool -tm gave %d" % tm.returncode)
        check = subprocess.run([bgrkit, "check", "--json", "LMML.BGR"], cwd=work, capture_output=True, text=True)
        findings = json.loads(check.stdout)["findings"]
        view = subprocess.run([bgrkit, "view", "LMML.BGR", "--attribution", CREDIT], cwd=work,
                              capture_output=True, text=True)
        expect(view.returncode == 0, "bgrkit view gave %d: %s" % (view.returncode, view.stderr))
        page = os.path.join(work, "LMML.html")
        with open(os.path.join(work, "LMML.BGR"), "rb") as f:
            edges = f.read().count(b"<edge>\0")
        with open(os.path.join(work, "LMML.PLY")) as f:
            aprons = sum(1 for line in f if line.startswith("PLY "))

        options = Options()
        options.binary_location = browser
        for a in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                  "--window-size=1400,900", "--allow-file-access-from-files"):
            options.add_argument(a)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        driver = webdriver.Chrome(service=Service(driver_path), options=options)
        try:
            start = time.time()
            driver.get("file://" + page)
            wait_for(driver, "return window.bgrView !== undefined")
            print("view_browser: the example's page opened in %.2f s" % (time.time() - start))
            errors = [e for e in driver.get_log("browser") if e["level"] == "SEVERE"]
            expect(not errors, "the page's script failed: %s" % errors)

            # what is drawn equals what the files and check hold
            drawn = driver.execute_script(
                "return bgrView.count('runway') + bgrView.count('taxiway') + bgrView.count('paint')")
            expect(drawn == edges, "%d edges drawn, the network has %d" % (drawn, edges))
            expect(driver.execute_script("return bgrView.count('apron')") == aprons, "aprons drawn differ")
            listed = driver.find_elements(By.CSS_SELECTOR, "#findings li")
            expect(len(listed) == len(findings), "%d findings listed, check has %d" % (len(listed), len(findings)))
            placed = sum(1 for f in findings if f["location"] is not None)
            marks = driver.execute_script("return bgrView.findings.getLayers().length")
            expect(marks == placed, "%d findings marked on the map, %d have a place" % (marks, placed))
            expect(CREDIT in driver.find_element(By.CLASS_NAME, "leaflet-control-attribution").text,
                   "the data's credit is not on the map")

            # a layer switched off is gone from the map and from the picture
            picture = "return Array.from(document.querySelectorAll('.leaflet-overlay-pane canvas'))" \
                      ".map(function (c) { return c.toDataURL(); }).join()"
            before = driver.execute_script(picture)
            boxes = driver.find_elements(By.CSS_SELECTOR, ".leaflet-control-layers-overlays label")
            taxiway = [b for b in boxes if b.text.strip() == "taxiway"]
            expect(len(taxiway) == 1, "no taxiway entry in the layer list")
            taxiway[0].find_element(By.TAG_NAME, "input").click()
            expect(not driver.execute_script("return bgrView.map.hasLayer(bgrView.layers.taxiway)"),
                   "the taxiway layer is still on the map")
            time.sleep(0.3)
            expect(driver.execute_script(picture) != before, "switching the taxiways off changed nothing drawn")
            taxiway[0].find_element(By.TAG_NAME, "input").click()

            # a finding clicked: the map goes there and says what the object is
            first = next(i for i, f in enumerate(findings) if f["object"] == "point" and f["location"])
            listed[first].click()
            info = driver.find_element(By.ID, "info").text
            number = findings[first]["number"]
            expect(("point %d: x " % number) in info, "the finding's point is not described: " + info)
            centre = driver.execute_script("var c = bgrView.map.getCenter(); return [c.lng, c.lat]")
            place = findings[first]["location"]
            expect(abs(centre[0] - place["x"]) < 1 and abs(centre[1] - place["z"]) < 1,
                   "the map is not centred on the finding: %s" % centre)

            # the pointer resting on a point tells its number and place
            node = driver.execute_script(
                "var S = SCENE, a = S.edges[0];"
                "bgrView.map.setView([S.nodes[2 * a + 1], S.nodes[2 * a]], 0, { animate: false }); return a;")
            ActionChains(driver).move_to_element(driver.find_element(By.ID, "map")).perform()
            wait_for(driver, "return document.getElementById('hover').textContent.indexOf('point %d: x ') === 0" % node)

            # a click on the longest edge's middle tells which edge it is
            driver.find_element(By.ID, "fit").click()
            where = driver.execute_script(
                "var S = SCENE, m = bgrView.map, best = -1, most = -1;"
                "for (var i = 0; i < S.edges.length; i += 2) {"
                "  var a = S.edges[i], b = S.edges[i + 1];"
                "  var d = Math.hypot(S.nodes[2 * a] - S.nodes[2 * b], S.nodes[2 * a + 1] - S.nodes[2 * b + 1]);"
                "  if (d > most) { most = d; best = i / 2; } }"
                "var a = S.edges[2 * best], b = S.edges[2 * best + 1];"
                "m.setView([(S.nodes[2 * a + 1] + S.nodes[2 * b + 1]) / 2, (S.nodes[2 * a] + S.nodes[2 * b]) / 2], 0,"
                "          { animate: false });"
                "return [best];")
            ActionChains(driver).move_to_element(driver.find_element(By.ID, "map")).click().perform()
            info = driver.find_element(By.ID, "info").text
            expect(info.startswith("edge %d: points " % where[0]), "a click on edge %d shows: %s" % (where[0], info))

            # the scale bar follows the zoom
            scale = driver.find_element(By.ID, "scale").text
            zoom = driver.execute_script("return bgrView.map.getZoom()")
            driver.find_element(By.CLASS_NAME, "leaflet-control-zoom-in").click()
            driver.find_element(By.CLASS_NAME, "leaflet-control-zoom-in").click()
            wait_for(driver, "return bgrView.map.getZoom() > %s" % zoom)
            time.sleep(0.5)
            expect(driver.find_element(By.ID, "scale").text != scale, "the scale bar stayed at " + scale)

            # the picture isn't blank
            driver.find_element(By.ID, "fit").click()
            time.sleep(0.5)
            colours = driver.execute_script(
                "var c = document.querySelector('.leaflet-overlay-pane canvas'), d = c.getContext('2d')"
                ".getImageData(0, 0, c.width, c.height).data, seen = {};"
                "for (var i = 0; i < d.length; i += 4 * 97) seen[d[i] + ',' + d[i + 1] + ',' + d[i + 2] + ',' + d[i + 3]] = 1;"
                "return Object.keys(seen).length;")
            expect(colours > 10, "the map is blank (%d colours)" % colours)
            png = driver.get_screenshot_as_png()
            expect(len(png) > 20000, "the screenshot is blank")
            if shot:
                with open(shot, "wb") as f:
                    f.write(png)
        finally:
            driver.quit()
    finally:
        shutil.rmtree(work, ignore_errors=True)
    print("view_browser: passed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
