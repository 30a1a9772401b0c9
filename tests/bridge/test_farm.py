# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A farm: 200 printers, 3 bridges, 500 jobs, and everything but the printers is killed meanwhile."""

import collections
import os
import random
import sys
import time
import unittest

import farmworld

PRINTERS = int(os.environ.get("ZYTEST_PRINTERS", "200"))
JOBS = int(os.environ.get("ZYTEST_JOBS", "500"))


class Farm(unittest.TestCase):
    def build(self, *arguments):
        world = farmworld.World(*arguments)
        self.addCleanup(world.close)
        return world

    def test_each_job_is_printed_exactly_once_while_bridges_and_broker_are_killed(self):
        seed = int(os.environ.get("ZYTEST_SEED") or random.randrange(1 << 32))
        print("seed", seed, file=sys.stderr)
        chance = random.Random(seed)
        world = self.build(PRINTERS, JOBS)
        cpu, memory = world.idle_usage(5)
        world.shop = farmworld.Shop(world.client, world.jobs)
        started = time.monotonic()
        for share in (0.1, 0.25, 0.4, 0.55, 0.7, 0.85):
            world.wait_for_jobs(("printing", "complete"), int(JOBS * share), 120)
            victim = chance.choice([*world.bridges, world.broker])
            print(f"{time.monotonic() - started:.0f} s: {share:.0%} started, killing",
                  getattr(victim, "config", "the broker"), file=sys.stderr)
            if victim is world.broker:
                world.client.restart(world.broker, world.farm.printers)
                world.shop.submit_unknown()
                continue
            victim.kill()
            time.sleep(chance.uniform(0, 8))  # short and long absences: the others step in or not
            victim.start()
        world.wait_for_jobs(("complete",), JOBS, 120)
        print(f"{time.monotonic() - started:.0f} s: all complete", file=sys.stderr)

        prints = collections.Counter(each["file"] for each in world.farm.says("printing"))
        wrong = {name: count for name, count in prints.items() if count != 1}
        for name in wrong:
            world.tell_story(name)
        self.assertEqual(wrong, {})
        self.assertEqual(len(prints), JOBS)
        print(f"handed in again: {world.shop.repetitions}", file=sys.stderr)
        busy = [farmworld.usage(bridge.process.process.pid) for bridge in world.bridges]
        print(f"idle: {cpu:.3f} processors, {memory / PRINTERS / 1024:.0f} KiB for each printer",
              file=sys.stderr)
        print(f"at the end: {sum(each[1] for each in busy) / PRINTERS / 1024:.0f} KiB",
              file=sys.stderr)
        self.assertLess(memory / PRINTERS, 1 << 20)
        self.assertLess(sum(each[1] for each in busy) / PRINTERS, 1 << 20)

    def test_a_change_is_published_within_a_second(self):
        world = self.build(PRINTERS, PRINTERS)
        world.client.forget()
        world.shop = farmworld.Shop(world.client, world.jobs)
        world.wait_for_jobs(("complete",), PRINTERS, 120)
        found = farmworld.latencies(world.farm, list(world.client.heard))
        print(f"{len(found)} changes: median {farmworld.percentile(found, 0.5):.3f} s, "
              f"99 % {farmworld.percentile(found, 0.99):.3f} s", file=sys.stderr)
        self.assertGreater(len(found), PRINTERS * 5)
        self.assertLess(farmworld.percentile(found, 0.99), 1)


if __name__ == "__main__":
    unittest.main()
