#!/usr/bin/env python3
"""play.py OUT OBJ: plays the real game through the page in a headless browser, by mouse, key and
touch. What the page looks like in the middle of it is kept in OBJ/page.png."""

import sys
import urllib.request

from browser import Browser
from cabinet import Cabinet


def play_left_by_mouse(page):
    page.click("#left [data-coin]")
    page.wait("state.sides[0].audits['Current Credits'] === 1")
    page.wait("state.sides[0].coin_meter === 1")
    page.mouse("mousePressed", ".left .start")
    page.wait("state.pressed.includes('start-left')")
    page.mouse("mouseReleased", ".left .start")
    page.wait("state.sides[0].paper_out > 2", 60)
    page.wait("find('#left [data-count]').textContent === String(state.sides[0].paper_out)")


def play_right_by_key_and_touch(page):
    page.key("keyDown", "6")
    page.key("keyUp", "6")
    page.wait("state.sides[1].audits['Current Credits'] === 1")
    page.touch(".right .start")
    page.wait("state.sides[1].audits['Games Played'] === 1", 60)


def serve(page):
    page.click("#hatch")
    page.wait("!find('#door').hidden")
    page.click("[data-toggle=jam-right]")
    page.wait("state.sides[1].jammed && find('[data-toggle=jam-right]').classList.contains('on')")
    page.key("keyDown", "K")
    page.wait("!state.sides[1].jammed")
    page.mouse("mousePressed", "[data-input=test]")
    page.wait("state.pressed.includes('test')")
    page.mouse("mouseReleased", "[data-input=test]")
    page.wait("!state.pressed.includes('test')")
    page.click("[data-toggle=deaf]")
    page.wait("state.devices.some(device => device.text === 'deaf' && !device.good)")
    page.click("[data-toggle=deaf]")
    page.click("[data-toggle=usb]")
    page.wait("!state.usb_plugged && state.devices.some(device => /USB/.test(device.name) && !device.good)")
    page.click("[data-toggle=usb]")
    page.wait("state.usb_plugged")
    page.value("void (find('#line input').value = 'jump left', find('#line').requestSubmit())")
    page.wait("find('#said').textContent.startsWith('there is no command')")


def cut_power(page):
    page.click("[data-toggle=power]")
    page.wait("!state.power && find('.glass').classList.contains('dark')")
    coins = page.value("state.sides[0].coin_meter")
    page.click("#left [data-coin]")
    page.wait("find('#message').textContent.startsWith('The coin came back')")
    page.click("[data-toggle=power]")
    page.wait("state.power && state.sides[0].takes_coins && pictureRate > 0", 60)
    assert page.value("state.sides[0].coin_meter") == coins


def brightest(page):
    return page.value("(() => { const small = new OffscreenCanvas(8, 8).getContext('2d');"
                      "small.drawImage(find('#screen'), 0, 0, 8, 8);"
                      "return Math.max(...small.getImageData(0, 0, 8, 8).data.filter("
                      "(_, i) => i % 4 < 3)); })()")


def main(out, obj):
    with Cabinet(out) as cabinet:
        with Browser(cabinet.address) as page:
            page.wait("state?.sides[0].takes_coins && pictureRate > 0", 60)
            play_left_by_mouse(page)
            play_right_by_key_and_touch(page)
            assert brightest(page) > 60, "the picture is dark"
            page.screenshot(f"{obj}/page.png")
            serve(page)
            cut_power(page)
            assert not page.errors, page.errors
        # Closing the page stops nothing.
        assert urllib.request.urlopen(cabinet.address, timeout=10).status == 200
    assert cabinet.process.returncode == 0, f"the cabinet ended with {cabinet.process.returncode}"
    print("played")


main(*sys.argv[1:])
