"""print.py HTML PDF: prints a page whose pictures and style lie beside it. WeasyPrint names pictures after their
addresses; here they have ones that do not depend on the directory, so that the PDF does not either."""

import pathlib
import sys

import weasyprint

BASE = "http://manual/"
page = pathlib.Path(sys.argv[1]).resolve()


def fetch(url):
    if not url.startswith(BASE):
        raise ValueError(f"{url} is not beside the page")
    return weasyprint.default_url_fetcher((page.parent / url.removeprefix(BASE)).as_uri())


weasyprint.HTML(string=page.read_text(encoding="utf-8"), base_url=BASE, url_fetcher=fetch).write_pdf(sys.argv[2])
