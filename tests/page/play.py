#!/usr/bin/env python3
"""play.py OUT OBJ [listen]: plays the real game through the page in a headless browser, by mouse, key and
touch. With "listen" it also tests the page's sound, which needs a quiet machine. Keeps a picture of the
page in OBJ/page.png."""

import json
import os
import sys
import time
import urllib.request

from browser import Browser
from cabinet import Cabinet


def play_left_by_mouse(page):
    page.wait("find('.station.left').dataset.next === 'coin'")
    page.click(".left [data-coin]")
    page.wait("state.sides[0].audits['Current Credits'] === 1")
    page.wait("find('.station.left').dataset.next === 'start'")
    page.wait("state.sides[0].coin_meter === 1")
    page.mouse("mousePressed", ".left .start")
    page.wait("state.pressed.includes('start-left')")
    page.mouse("mouseReleased", ".left .start")
    page.wait("state.sides[0].paper_out > 0", 60)  # "Minimum Tickets"
    page.wait("find('#left [data-count]').textContent === String(state.sides[0].paper_out)")


def play_right_by_key_and_touch(page):
    page.key("keyDown", "6")
    page.key("keyUp", "6")
    page.wait("state.sides[1].audits['Current Credits'] === 1")
    page.touch(".right .start")
    page.wait("state.sides[1].audits['Games Played'] === 1", 60)


def see_sizes(page):
    """Picture, coin slot and Start button are one below the other, and on the screen."""
    for width, height in ((1500, 1000), (1280, 720), (390, 844)):
        page.size(width, height)
        page.wait("(box => box('.glass').width > 340 && box('.glass').bottom <= box('.coin').top"
                  " && box('.start').bottom <= innerHeight && document.body.scrollWidth <= innerWidth"
                  ")(query => find(query).getBoundingClientRect())")
    page.size(1366, 768)


def serve(page):
    page.key("keyDown", "E")  # the door is shut
    page.click("#hatch")
    page.wait("!find('#door').hidden")
    page.click("[data-toggle=jam-right]")
    assert page.value("state.sides[0].paper_left") != 0, "a key worked behind the shut door"
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
    page.wait("!state.power && find('#trouble p').textContent.startsWith('The power is off')")
    coins = page.value("state.sides[0].coin_meter")
    page.click(".left [data-coin]")
    page.wait("find('#message').textContent.startsWith('The coin came back')")
    page.click("[data-toggle=power]")
    page.wait("state.power && state.sides[0].takes_coins && pictureRate > 0", 120)
    assert page.value("state.sides[0].coin_meter") == coins


def see_game_end(page, cabinet):
    cabinet.do("kill game")
    page.wait("find('#trouble p').textContent.startsWith('The game has ended')")
    cabinet.do("start game")
    page.wait("find('#trouble p').textContent === 'The game is starting.'")
    page.wait("find('#trouble').hidden && state.sides[0].takes_coins", 120)


def loudest(page, seconds):
    """The loudest sample of the page's output in this time, relative to full scale."""
    return page.value("(async () => { let most = 0; const ear = sound.context.createAnalyser();"
                      "ear.fftSize = 4096; sound.gain.connect(ear); const heard = new Float32Array(4096);"
                      f"for (const end = Date.now() + {seconds * 1000}; Date.now() < end;) {{"
                      "ear.getFloatTimeDomainData(heard); most = Math.max(most, ...heard.map(Math.abs));"
                      "await pause(50); } sound.gain.disconnect(ear); return most; })()")


def coin_is_heard(page):
    page.click(".left [data-coin]")
    return loudest(page, 2) > 0.02


def hear(page):
    assert page.value("sound.context") is None, "it sounds without being asked"
    page.click("#sound")
    page.wait("sound.report?.playing && find('#delay').textContent.endsWith(' ms late')")
    assert page.value("sound.context.state") == "running"
    assert any(coin_is_heard(page) for _ in range(5)), "five coins, and none is heard"
    page.value("void (find('#volume').value = 0, find('#volume').dispatchEvent(new Event('input')))")
    time.sleep(0.5)
    assert loudest(page, 1) < 1e-4
    page.value("void (find('#volume').value = 90, find('#volume').dispatchEvent(new Event('input')))")


def hear_twice(page, address):
    """Two pages share a browser's six connections: both hear, both can play."""
    other = page.tab(address, 390, 844)
    other.wait("state")
    other.click("#sound")
    other.wait("sound.report?.playing")
    other.call("Page.bringToFront")
    coins = page.value("state.sides[0].coin_meter")
    other.click(".left [data-coin]")
    other.wait(f"state.sides[0].coin_meter === {coins + 1}")
    page.wait(f"sound.report?.playing && state.sides[0].coin_meter === {coins + 1}")
    assert not other.errors, other.errors
    other.call("Page.close")
    page.call("Page.bringToFront")
    page.click("#sound")
    page.wait("sound.context === null && find('#delay').textContent === 'click to hear'")
    complaint = page.value("(async () => { find('#message').textContent = '';"
                           "find('#sound').click(); find('#sound').click(); await pause(500);"
                           "return find('#message').textContent; })()")
    assert complaint == "" and page.value("sound.context === null"), complaint
    page.click("#sound")
    page.wait("sound.report?.playing")


def prove_output(page, address):
    here = os.path.dirname(__file__)
    source = urllib.request.urlopen(address + "sound-output.js", timeout=10).read().decode()
    script = open(os.path.join(here, "output.js")).read()
    page.call("Page.setBypassCSP", enabled=True)  # it makes a function of the text
    page.call("Page.reload")
    page.wait("document.readyState === 'complete' && state")
    wrong = page.value(f"(() => {{ const SOURCE = {json.dumps(source)};\nconst wrong = {script};\nreturn wrong; }})()")
    assert wrong == [], wrong


def see_what_cannot_sound(page, address):
    page.call("Page.addScriptToEvaluateOnNewDocument", source="delete BaseAudioContext.prototype.audioWorklet;")
    page.call("Page.navigate", url=address)
    page.wait("document.querySelector('#speaker.without #no-sound')?.textContent.includes('AudioWorklet')")


def brightest(page):
    return page.value("(() => { const small = new OffscreenCanvas(8, 8).getContext('2d');"
                      "small.drawImage(find('#screen'), 0, 0, 8, 8);"
                      "return Math.max(...small.getImageData(0, 0, 8, 8).data.filter("
                      "(_, i) => i % 4 < 3)); })()")


def read_books(page, obj):
    page.value("find('#door').hidden && find('#hatch').click()")
    page.wait("[...all('[data-games] li')].some(game => / left game 1: paid by coin/.test(game.textContent)"
              "  && /paper was out/.test(game.textContent))")
    page.wait("[...all('[data-sheet] tr')].some(row => row.textContent.startsWith('Percent paid back'))")
    assert page.value("all('[data-wrong] li').length") == 0
    page.value("void find('#door').scrollTo(0, find('#span').offsetTop)")
    page.screenshot(f"{obj}/page-books.png")
    page.value("void find('#door').scrollTo(0, 0)")
    page.click("#hatch")


def main(out, obj, listen=None):
    with Cabinet(out, "--sound", "page") as cabinet:
        with Browser(cabinet.address) as page:
            page.wait("state?.sides[0].takes_coins && pictureRate > 0", 120)
            cabinet.do("rate left 50")  # the paper of a jackpot, too, is out in seconds
            play_left_by_mouse(page)
            play_right_by_key_and_touch(page)
            assert brightest(page) > 60, "the picture is dark"
            page.screenshot(f"{obj}/page.png")
            read_books(page, obj)
            see_sizes(page)
            if listen:
                hear(page)
                hear_twice(page, cabinet.address)
            serve(page)
            cut_power(page)
            see_game_end(page, cabinet)
            if listen:
                page.wait("sound.report?.playing")  # the game that came with the power
            assert not page.errors, page.errors
            if listen:
                prove_output(page, cabinet.address)
                see_what_cannot_sound(page, cabinet.address)
        # Closing the page stops nothing.
        assert urllib.request.urlopen(cabinet.address, timeout=10).status == 200
    assert cabinet.process.returncode == 0, f"the cabinet ended with {cabinet.process.returncode}"
    print("played")


main(*sys.argv[1:])
