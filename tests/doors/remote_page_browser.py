#!/usr/bin/python3
"""Vantrel's remote page in a real browser: Debian's chromium, headless, driven by chromedriver
through python3-selenium. Steps through the page as a person on a phone would, and as a page of
another site would try to, and prints what it saw as one JSON object.

    remote_page_browser.py BASE TOKEN PROFILE_FOLDER
"""
import http.server
import json
import os
import sys
import threading
import time

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.support.ui import WebDriverWait

base, token, profile = sys.argv[1], sys.argv[2], sys.argv[3]
seen = {}


class OtherSite(http.server.BaseHTTPRequestHandler):
    """A page of another site that sends a form to Vantrel's API as soon as it is opened."""

    def do_GET(self):
        page = (
            "<html><body><form id='f' method='POST' action='%s/api/stop' enctype='text/plain'>"
            "<input name='{\"id\": \"' value='x\"}'></form>"
            "<script>document.getElementById('f').submit()</script></body></html>" % base
        ).encode()
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.send_header("Content-Length", str(len(page)))
        self.end_headers()
        self.wfile.write(page)

    def log_message(self, *args):
        pass


other = http.server.HTTPServer(("127.0.0.1", 0), OtherSite)
threading.Thread(target=other.serve_forever, daemon=True).start()

options = Options()
options.binary_location = "/usr/bin/chromium"
for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                 "--user-data-dir=" + profile, "--no-first-run", "--window-size=412,915"):
    options.add_argument(argument)
driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
wait = WebDriverWait(driver, 20)


def text(element_id):
    return driver.find_element(By.ID, element_id).text


try:
    # With the token, as the QR code opens it.
    driver.get("%s/#token=%s" % (base, token))
    wait.until(lambda d: text("status") == "Connected")
    seen["tokenLeftTheAddress"] = "token" not in driver.current_url
    wait.until(lambda d: "Walls" in text("run-list"))
    seen["runBefore"] = text("run-list").splitlines()[0]
    driver.find_element(By.ID, "next-button").click()
    wait.until(lambda d: text("run-list").splitlines()[0] != seen["runBefore"])
    seen["runAfterNext"] = text("run-list").splitlines()[0]
    if os.environ.get("VANTREL_REMOTE_SHOT"):
        time.sleep(1.2)
        driver.save_screenshot(os.environ["VANTREL_REMOTE_SHOT"])
    address = driver.find_element(By.ID, "address")
    address.send_keys("javascript:alert(1)")
    driver.find_element(By.ID, "open-button").click()
    wait.until(lambda d: text("answer") != "")
    seen["javascriptAnswer"] = text("answer")
    address.clear()
    address.send_keys("file:///etc/passwd")
    driver.find_element(By.ID, "open-button").click()
    time.sleep(1.5)
    seen["fileAnswer"] = text("answer")
    seen["windowsShown"] = text("window-list")
    seen["pickerLists"] = [o.text for o in driver.find_elements(By.CSS_SELECTOR, "#list-picker option")]

    # Without the token: a new tab keeps nothing of the first one.
    driver.switch_to.new_window("tab")
    driver.get(base + "/")
    wait.until(lambda d: text("status") != "Connecting…")
    seen["withoutToken"] = text("status")
    seen["lockedShown"] = driver.find_element(By.ID, "locked").is_displayed()

    # A wrong token.
    driver.switch_to.new_window("tab")
    driver.get("%s/#token=%s" % (base, "wrong" + token[5:]))
    wait.until(lambda d: text("status") in ("No access", "Wait a moment"))
    seen["wrongToken"] = text("status")
    # That tab stops guessing, and the wait it brought on passes.
    driver.close()
    driver.switch_to.window(driver.window_handles[0])
    time.sleep(5)

    # Another site's page sends a form to the API.
    driver.switch_to.new_window("tab")
    driver.get("http://127.0.0.1:%d/" % other.server_address[1])
    time.sleep(2)
finally:
    driver.quit()
    other.shutdown()

print(json.dumps(seen))
